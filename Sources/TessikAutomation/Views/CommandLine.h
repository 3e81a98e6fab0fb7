#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tessik {

/// What the program was started with.
struct CommandLine {
    bool rig = false;    ///< run on the simulated desk and recorder
    bool logCC = false;  ///< write every Control Change received to standard error
    QString tourFolder;  ///< run the tour into this folder; empty for none
    QString checkFile;   ///< only say what this session file holds; empty for none
    QString sessionFile; ///< open this session; empty for none

    /// What to print instead of starting, and the exit status to end with.
    struct Ending {
        QString text;
        bool isError = false;
        int exitStatus = 0;
    };
    std::optional<Ending> ending;

    /// `arguments` as of the process, the program's name first.
    static CommandLine parse(const QStringList& arguments);
};

} // namespace tessik
