#include "TessikKit/MIDI/PortCable.h"

#include <utility>

namespace tessik {

MIDIStatus PortCable::lay(MIDIEndpointRef endpoint) {
    if (endpoint != std::exchange(_endpoint, endpoint)) _wasPutBack = false;
    isCut = false;
    refusal = _connect(endpoint);
    return refusal.value();
}

void PortCable::leave() {
    _endpoint = 0;
    refusal = 0;
    isCut = false;
}

bool PortCable::takeDue() {
    if (_endpoint == 0) return false;
    if (refusal.value() != 0) return true;
    const bool isConnected = _isConnected(_endpoint);
    isCut = !isConnected && _wasPutBack;
    return !isConnected && !std::exchange(_wasPutBack, true);
}

} // namespace tessik
