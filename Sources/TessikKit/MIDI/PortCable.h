#pragma once

#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/Models/Published.h"

namespace tessik {

/// The connection between a port of ours and the one the user chose. It may be refused, for one by a program that has
/// that port to itself, and others may remove it, as patch bays do: then it is restored once. Main thread only.
class PortCable {
public:
    /// `connect` makes the connection, `isConnected` tells whether it still exists.
    PortCable(std::function<MIDIStatus(MIDIEndpointRef)> connect, std::function<bool(MIDIEndpointRef)> isConnected)
        : _connect(std::move(connect)), _isConnected(std::move(isConnected)) {}

    MIDIStatus lay(MIDIEndpointRef endpoint);
    /// Nothing is chosen, or the chosen port is missing.
    void leave();
    /// After any setup change: whether it must be made again now, because it was refused or removed. For a removed one
    /// the answer is yes once; asking spends it.
    bool takeDue();

    Published<MIDIStatus, PortCable> refusal{0}; ///< why the last attempt failed; 0 if it did not
    Published<bool, PortCable> isCut{false};     ///< removed again after it was restored

private:
    const std::function<MIDIStatus(MIDIEndpointRef)> _connect;
    const std::function<bool(MIDIEndpointRef)> _isConnected;
    MIDIEndpointRef _endpoint = 0;
    bool _wasPutBack = false;
};

} // namespace tessik
