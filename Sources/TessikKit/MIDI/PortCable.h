#pragma once

#include "TessikKit/MIDI/MIDIService.h"

#include <QProperty>

namespace tessik {

/// The connection between an own port and the one that the user chose. It may be refused, as by a program that holds
/// that port for itself alone, and others may take it out, as patch bays do: then it is put back once. Main thread
/// only.
class PortCable {
public:
    /// `connect` makes the connection, `isConnected` tells whether it is still there.
    PortCable(std::function<MIDIStatus(MIDIEndpointRef)> connect, std::function<bool(MIDIEndpointRef)> isConnected)
        : _connect(std::move(connect)), _isConnected(std::move(isConnected)) {}

    MIDIStatus lay(MIDIEndpointRef endpoint);
    /// Nothing is chosen, or what is chosen is not there.
    void leave();
    /// After any change of the setup: whether it has to be laid again, because it was refused or taken out.
    bool isDue();

    QProperty<MIDIStatus> refusal{0}; ///< why the last attempt failed; 0 where it did not
    QProperty<bool> isCut{false};     ///< taken out again after it was put back

private:
    const std::function<MIDIStatus(MIDIEndpointRef)> _connect;
    const std::function<bool(MIDIEndpointRef)> _isConnected;
    MIDIEndpointRef _endpoint = 0;
    bool _wasPutBack = false;
};

} // namespace tessik
