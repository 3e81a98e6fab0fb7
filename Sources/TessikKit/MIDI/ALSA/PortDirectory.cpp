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
    for (const SequencerPort& port : present) {
        if (!serves(port, direction)) continue;
        const Identity& identity = _living.at(port.address);
        const int ordinal = *identity.ordinals[std::size_t(direction)];
        endpoints.push_back({handle(port.address), stableUniqueID(direction, port.clientName, port.portName, ordinal),
                             displayName(port.clientName, port.portName), ordinal, isAmbiguous(identity, direction),
                             port.device});
    }
    return endpoints;
}

void PortDirectory::identify(const std::vector<SequencerPort>& present) {
    std::erase_if(_living, [&](const auto& entry) {
        return std::none_of(present.begin(), present.end(), [&](const SequencerPort& port) {
            return port.address == entry.first && port.clientName == entry.second.clientName &&
                   port.portName == entry.second.portName;
        });
    });
    // Which of two ports appears first after startup is chance, but their sockets are not.
    std::vector<const SequencerPort*> sorted;
    sorted.reserve(present.size());
    for (const SequencerPort& port : present)
        sorted.push_back(&port);
    std::stable_sort(sorted.begin(), sorted.end(), [](const SequencerPort* a, const SequencerPort* b) {
        return a->device.socket < b->device.socket;
    });
    for (const SequencerPort* port : sorted)
        for (const PortDirection direction : {PortDirection::source, PortDirection::destination}) {
            if (!serves(*port, direction)) continue;
            Identity& identity = _living[port->address];
            identity.clientName = port->clientName;
            identity.portName = port->portName;
            giveOrdinal(identity, direction, port->device);
        }
}

void PortDirectory::giveOrdinal(Identity& identity, PortDirection direction, const DeviceIdentity& device) {
    std::vector<DeviceIdentity>& devices = _devices[{direction, identity.clientName, identity.portName}];
    std::optional<int>& ordinal = identity.ordinals[std::size_t(direction)];
    if (!ordinal) {
        std::vector<int> free, sameSerial, same;
        for (int n = 0; n < int(devices.size()); ++n) {
            if (isLiving(identity, direction, n)) continue;
            const DeviceIdentity& gone = devices[std::size_t(n)];
            free.push_back(n);
            if (device.isKnown() && gone == device) same.push_back(n);
            if (!device.serial.isEmpty() && gone.serial == device.serial) sameSerial.push_back(n); // in another socket
        }
        for (const std::vector<int>& candidates : {same, sameSerial, free})
            if (!ordinal && candidates.size() == 1) ordinal = candidates.front();
        identity.isGuess[std::size_t(direction)] = !ordinal && !free.empty();
        if (!ordinal) ordinal = free.empty() ? int(devices.size()) : free.front();
        if (free.empty()) devices.emplace_back();
    }
    devices[std::size_t(*ordinal)] = device;
}

bool PortDirectory::isLiving(const Identity& like, PortDirection direction, int ordinal) const {
    return std::any_of(_living.begin(), _living.end(), [&](const auto& entry) {
        const Identity& living = entry.second;
        return living.clientName == like.clientName && living.portName == like.portName &&
               living.ordinals[std::size_t(direction)] == ordinal;
    });
}

bool PortDirectory::isAmbiguous(const Identity& identity, PortDirection direction) const {
    if (identity.isGuess[std::size_t(direction)]) return true;
    const std::vector<DeviceIdentity>& devices = _devices.at({direction, identity.clientName, identity.portName});
    const int ordinal = *identity.ordinals[std::size_t(direction)];
    for (int n = 0; n < int(devices.size()); ++n) // any two with no identity, or the same one, may have swapped
        if (n != ordinal && devices[std::size_t(n)] == devices[std::size_t(ordinal)] &&
            isLiving(identity, direction, n))
            return true;
    return false;
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
