#pragma once

#include "TessikRig/SimulatedConsole.h"
#include "TessikRig/SimulatedRecorder.h"

#include <QStringList>

namespace tessik {

/// The rig's hands as lines of text:
///
///     fader CHANNEL VALUE     scene 1-8       play  stop  pause  rewind  forward  record
///     mute CHANNEL on|off     store 1-8       locate HH:MM:SS:FF
///     eq, aux, mon likewise   show CHANNEL    where
///
/// CHANNEL is a channel's id or short name: "input-5" or "5", "G3", "ST". VALUE is 0 to 127.
class RigCommands {
public:
    RigCommands(SimulatedConsole& desk, SimulatedRecorder& recorder) : _desk(desk), _recorder(recorder) {}

    /// Executes one line. Returns "ok", what was asked for, or "error: " and the reason; empty for an empty line.
    QString obey(const QString& line);

private:
    std::optional<ChannelKind> channel(const QString& name) const;
    std::optional<QString> obeyRecorder(const QStringList& words);
    std::optional<QString> obeyDesk(const QStringList& words);

    SimulatedConsole& _desk;
    SimulatedRecorder& _recorder;
};

} // namespace tessik
