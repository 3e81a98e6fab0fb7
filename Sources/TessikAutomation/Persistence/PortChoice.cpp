#include "TessikAutomation/Persistence/PortChoice.h"

namespace tessik {

bool PortChoice::isListed(std::int32_t uniqueID) const {
    const std::vector<MIDIPortInfo>& ports = available.value();
    return std::any_of(ports.begin(), ports.end(),
                       [uniqueID](const MIDIPortInfo& port) { return port.uniqueID == uniqueID; });
}

void PortChoice::choose(std::optional<std::int32_t> uniqueID) const {
    select(uniqueID);
    SavedSettings::setUniqueID(key, uniqueID);
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
