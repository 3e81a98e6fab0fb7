#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tessik {

/// How the program was started.
struct CommandLine {
    bool rig = false;    ///< run on the simulated desk and recorder
    bool logCC = false;  ///< write every received Control Change to standard error
    QString tourFolder;  ///< run the tour into this folder; empty for none
    QString checkFile;   ///< only describe this session file; empty for none
    QString sessionFile; ///< open this session; empty for none

    /// What to print instead of starting, and the exit status.
    struct Ending {
        QString text;
        bool isError = false;
        int exitStatus = 0;
    };
    std::optional<Ending> ending;

    /// `arguments` as passed to the process, program name first.
    static CommandLine parse(const QStringList& arguments);
};

} // namespace tessik
