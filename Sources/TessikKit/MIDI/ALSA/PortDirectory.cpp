#include "TessikKit/MIDI/ALSA/PortDirectory.h"

#include <alsa/asoundlib.h>

#include <algorithm>

namespace tessik {

void PortDirectory::portExited(SequencerAddress address) {
    ++_portExits[address];
    _living.erase(address);
}

void PortDirectory::clientExited(std::uint8_t client) {
    ++_clientExits[client];
    std::erase_if(_living, [client](const auto& entry) { return entry.first.client == client; });
}

bool PortDirectory::serves(const SequencerPort& port, PortDirection direction) const {
    const unsigned wanted = direction == PortDirection::source ? SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ
                                                               : SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
    return port.address.client != SND_SEQ_CLIENT_SYSTEM && port.processID != _ownProcessID &&
           !(port.capability & SND_SEQ_PORT_CAP_NO_EXPORT) && (port.capability & wanted) == wanted;
}

std::vector<MIDIEndpoint> PortDirectory::list(PortDirection direction, const std::vector<SequencerPort>& present) {
    identify(present);
    std::vector<MIDIEndpoint> endpoints;
    for (const SequencerPort& port : present)
        if (serves(port, direction))
            endpoints.push_back({handle(port.address), _living.at(port.address).uniqueIDs[std::size_t(direction)],
                                 displayName(port.clientName, port.portName)});
    return endpoints;
}

void PortDirectory::identify(const std::vector<SequencerPort>& present) {
    std::erase_if(_living, [&](const auto& entry) {
        return std::none_of(present.begin(), present.end(), [&](const SequencerPort& port) {
            return port.address == entry.first && port.clientName == entry.second.clientName &&
                   port.portName == entry.second.portName;
        });
    });
    for (const SequencerPort& port : present)
        for (const PortDirection direction : {PortDirection::source, PortDirection::destination}) {
            if (!serves(port, direction)) continue;
            Identity& identity = _living[port.address];
            identity.clientName = port.clientName;
            identity.portName = port.portName;
            std::optional<std::int32_t>& id = identity.uniqueIDs[std::size_t(direction)];
            if (!id) id = freeUniqueID(direction, port.clientName, port.portName);
        }
}

std::int32_t PortDirectory::freeUniqueID(PortDirection direction, const QString& clientName,
                                         const QString& portName) const {
    const auto isTaken = [&](std::int32_t id) {
        return std::any_of(_living.begin(), _living.end(),
                           [&](const auto& entry) { return entry.second.uniqueIDs[std::size_t(direction)] == id; });
    };
    for (int ordinal = 0;; ++ordinal)
        if (const std::int32_t id = stableUniqueID(direction, clientName, portName, ordinal); !isTaken(id)) return id;
}

MIDIEndpointRef PortDirectory::handle(SequencerAddress address) const {
    const auto exits = _portExits.find(address);
    const std::uint32_t generation =
        _losses + _clientExits[address.client] + (exits == _portExits.end() ? 0 : exits->second);
    return generation << 16 | std::uint32_t(address.client) << 8 | address.port;
}

std::optional<SequencerAddress> PortDirectory::resolve(MIDIEndpointRef endpoint) const {
    const SequencerAddress address{std::uint8_t(endpoint >> 8), std::uint8_t(endpoint)};
    return endpoint != 0 && handle(address) == endpoint ? std::optional(address) : std::nullopt;
}

QString PortDirectory::displayName(const QString& clientName, const QString& portName) {
    if (portName.startsWith(clientName)) return portName;
    return portName.isEmpty() ? clientName : clientName + QLatin1Char(' ') + portName;
}

} // namespace tessik
