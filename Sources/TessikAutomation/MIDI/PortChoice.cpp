#include "TessikAutomation/MIDI/PortChoice.h"

namespace tessik {

bool PortChoice::isAmbiguous() const {
    const std::optional<std::int32_t> id = selected.value();
    const MIDIPortInfo* port = id ? findPort(available.value(), id) : nullptr;
    return port && port->isAmbiguous;
}

bool PortChoice::isAnotherDevice() const {
    const std::optional<std::int32_t> id = selected.value();
    const MIDIPortInfo* port = id ? findPort(available.value(), id) : nullptr;
    return port && port->device.mayDifferFrom(SavedSettings::device(key));
}

void PortChoice::choose(std::optional<std::int32_t> uniqueID) const {
    const MIDIPortInfo* port = findPort(available.value(), uniqueID);
    // First: observers of the selection look at both.
    SavedSettings::setUniqueID(key, uniqueID, port ? port->device : DeviceIdentity());
    select(uniqueID);
}

void PortChoice::restore() const {
    const std::optional<std::int32_t> saved = SavedSettings::uniqueID(key);
    if (saved && isListed(*saved)) select(saved);
}

PortChoice sourceChoice(QLatin1String key, MIDIInputConnection& connection) {
    return {key, connection.availableSources, connection.connectedSourceID,
            [&connection](std::optional<std::int32_t> uniqueID) { connection.selectSource(uniqueID); }};
}

PortChoice destinationChoice(QLatin1String key, MIDIDestinationPort& port) {
    return {key, port.availableDestinations, port.connectedDestinationID,
            [&port](std::optional<std::int32_t> uniqueID) { port.selectDestination(uniqueID); }};
}

} // namespace tessik
