#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include "TessikKit/MIDI/StableUniqueID.h"

#include <algorithm>

namespace tessik {

VirtualMIDIService::VirtualMIDIService(Delivery delivery, const UptimeClock& clock)
    : _delivery(delivery), _clock(clock) {
    if (delivery == Delivery::thread) _thread = std::thread([this] { run(); });
}

VirtualMIDIService::~VirtualMIDIService() {
    {
        const std::lock_guard lock(_mutex);
        _ending = true;
    }
    _changed.notify_all();
    if (_thread.joinable()) _thread.join();
}

MIDIStatus VirtualMIDIService::takeFailure(Operation operation) {
    const auto failure = _failures.find(operation);
    if (failure == _failures.end()) return 0;
    return _failures.extract(failure).mapped();
}

MIDIStatus VirtualMIDIService::createClient(const QString& name, MIDINotifyBlock notify, MIDIClientRef& client) {
    const std::lock_guard lock(_mutex);
    if (const MIDIStatus failed = takeFailure(Operation::createClient)) return failed;
    client = _nextHandle++;
    _clients[client] = {name, std::move(notify)};
    return 0;
}

void VirtualMIDIService::disposeClient(MIDIClientRef client) {
    std::unique_lock lock(_mutex);
    if (_clients.erase(client) == 0) return;
    std::erase_if(_ports, [client](const auto& port) { return port.second.client == client; });
    const bool hadEndpoints =
        std::erase_if(_endpoints, [client](const Endpoint& endpoint) { return endpoint.client == client; }) > 0;
    std::erase_if(_waiting, [client](const Delivered& item) { return item.client == client; });
    if (hadEndpoints) notifyAll(lock);
    if (std::this_thread::get_id() != _thread.get_id()) _changed.wait(lock, [&] { return _delivering != client; });
}

MIDIStatus VirtualMIDIService::createInputPort(MIDIClientRef client, const QString&, MIDIReceiveBlock receive,
                                               MIDIPortRef& port) {
    const std::lock_guard lock(_mutex);
    if (const MIDIStatus failed = takeFailure(Operation::createInputPort)) return failed;
    if (!_clients.contains(client)) return midiUnknownHandle;
    port = _nextHandle++;
    _ports[port] = {client, std::make_shared<MIDIReceiveBlock>(std::move(receive)), {}};
    return 0;
}

MIDIStatus VirtualMIDIService::createOutputPort(MIDIClientRef client, const QString&, MIDIPortRef& port) {
    const std::lock_guard lock(_mutex);
    if (const MIDIStatus failed = takeFailure(Operation::createOutputPort)) return failed;
    if (!_clients.contains(client)) return midiUnknownHandle;
    port = _nextHandle++;
    _ports[port] = {client, nullptr, {}};
    return 0;
}

const VirtualMIDIService::Endpoint* VirtualMIDIService::find(MIDIEndpointRef handle, bool isDestination) const {
    const auto found = std::find_if(_endpoints.begin(), _endpoints.end(), [&](const Endpoint& endpoint) {
        return endpoint.plugged && bool(endpoint.receive) == isDestination && endpoint.handle == handle;
    });
    return found == _endpoints.end() ? nullptr : &*found;
}

std::vector<MIDIEndpoint> VirtualMIDIService::enumerate(bool destinations) const {
    const std::lock_guard lock(_mutex);
    std::vector<MIDIEndpoint> list;
    for (const Endpoint& endpoint : _endpoints)
        if (endpoint.plugged && bool(endpoint.receive) == destinations)
            list.push_back({endpoint.handle, endpoint.uniqueID,
                            endpoint.nameReadable ? std::optional(endpoint.name) : std::nullopt, endpoint.ordinal,
                            false, endpoint.device});
    return list;
}

std::vector<MIDIEndpoint> VirtualMIDIService::sources() const { return enumerate(false); }
std::vector<MIDIEndpoint> VirtualMIDIService::destinations() const { return enumerate(true); }

MIDIStatus VirtualMIDIService::connectSource(MIDIPortRef inputPort, MIDIEndpointRef source) {
    const std::lock_guard lock(_mutex);
    if (const MIDIStatus failed = takeFailure(Operation::connectSource)) return failed;
    const auto port = _ports.find(inputPort);
    const Endpoint* endpoint = find(source, false);
    if (port == _ports.end() || !port->second.receive || !endpoint) return midiUnknownHandle;
    auto& connected = port->second.connected;
    if (std::find(connected.begin(), connected.end(), source) != connected.end()) return 0;
    if (endpoint->held) return midiPortHeld;
    connected.push_back(source);
    return 0;
}

MIDIStatus VirtualMIDIService::connectDestination(MIDIPortRef outputPort, MIDIEndpointRef destination) {
    const std::lock_guard lock(_mutex);
    if (const MIDIStatus failed = takeFailure(Operation::connectDestination)) return failed;
    const auto port = _ports.find(outputPort);
    if (port == _ports.end() || port->second.receive) return midiUnknownHandle;
    if (port->second.connected == std::vector{destination}) return 0;
    port->second.connected.clear();
    if (destination == 0) return 0;
    const Endpoint* endpoint = find(destination, true);
    if (!endpoint) return midiUnknownHandle;
    if (endpoint->held) return midiPortHeld;
    port->second.connected.push_back(destination);
    return 0;
}

bool VirtualMIDIService::isConnected(MIDIPortRef port, MIDIEndpointRef endpoint) const {
    const std::lock_guard lock(_mutex);
    const auto found = _ports.find(port);
    if (found == _ports.end()) return false;
    const auto& connected = found->second.connected;
    return std::find(connected.begin(), connected.end(), endpoint) != connected.end();
}

MIDIStatus VirtualMIDIService::disconnectSource(MIDIPortRef inputPort, MIDIEndpointRef source) {
    const std::lock_guard lock(_mutex);
    const auto port = _ports.find(inputPort);
    if (port == _ports.end() || std::erase(port->second.connected, source) == 0) return midiUnknownHandle;
    return 0;
}

MIDIStatus VirtualMIDIService::send(MIDIPortRef outputPort, MIDIEndpointRef destination,
                                    std::span<const std::uint32_t> words) {
    std::unique_lock lock(_mutex);
    if (const MIDIStatus failed = takeFailure(Operation::send)) return failed;
    const Endpoint* endpoint = find(destination, true);
    if (!_ports.contains(outputPort) || !endpoint) return midiUnknownHandle;
    deliver({.client = endpoint->client,
             .receive = endpoint->receive,
             .stamp = _clock.now(),
             .words = {words.begin(), words.end()}},
            lock);
    return 0;
}

MIDIStatus VirtualMIDIService::addEndpoint(MIDIClientRef client, const QString& name,
                                           std::shared_ptr<MIDIReceiveBlock> receive, MIDIEndpointRef& out) {
    std::unique_lock lock(_mutex);
    const auto owner = _clients.find(client);
    if (owner == _clients.end()) return midiUnknownHandle;
    const PortDirection direction = receive ? PortDirection::destination : PortDirection::source;
    const auto taken = [&](std::int32_t id) {
        return std::any_of(_endpoints.begin(), _endpoints.end(), [id](const Endpoint& e) { return e.uniqueID == id; });
    };
    int ordinal = 0;
    while (taken(stableUniqueID(direction, owner->second.name, name, ordinal)))
        ++ordinal;
    out = _nextHandle++;
    _endpoints.push_back({.client = client,
                          .handle = out,
                          .created = out,
                          .uniqueID = stableUniqueID(direction, owner->second.name, name, ordinal),
                          .ordinal = ordinal,
                          .name = name,
                          .receive = std::move(receive)});
    notifyAll(lock);
    return 0;
}

MIDIStatus VirtualMIDIService::createSource(MIDIClientRef client, const QString& name, MIDIEndpointRef& source) {
    return addEndpoint(client, name, nullptr, source);
}

MIDIStatus VirtualMIDIService::createDestination(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                                                 MIDIEndpointRef& destination) {
    return addEndpoint(client, name, std::make_shared<MIDIReceiveBlock>(std::move(receive)), destination);
}

MIDIStatus VirtualMIDIService::transmit(MIDIEndpointRef source, std::span<const std::uint32_t> words) {
    const MIDIEventPacket packet{_clock.now(), words};
    inject(source, {.packets = {&packet, 1}});
    return 0;
}

void VirtualMIDIService::inject(MIDIEndpointRef source, const MIDIEventList& list) {
    std::unique_lock lock(_mutex);
    const auto endpoint = std::find_if(_endpoints.begin(), _endpoints.end(), [source](const Endpoint& candidate) {
        return candidate.plugged && (candidate.created == source || candidate.handle == source);
    });
    if (endpoint == _endpoints.end()) return; // the cable is unplugged
    std::vector<Delivered> items;
    for (const auto& [ref, port] : _ports) {
        if (std::find(port.connected.begin(), port.connected.end(), endpoint->handle) == port.connected.end()) continue;
        Delivered item{.client = port.client, .receive = port.receive, .dataLost = list.dataLost};
        for (const MIDIEventPacket& packet : list.packets)
            item.words.insert(item.words.end(), packet.words.begin(), packet.words.end());
        std::size_t at = 0;
        for (const MIDIEventPacket& packet : list.packets) {
            item.packets.push_back({packet.stamp, std::span(item.words).subspan(at, packet.words.size())});
            at += packet.words.size();
        }
        items.push_back(std::move(item));
    }
    for (Delivered& item : items)
        deliver(std::move(item), lock);
}

void VirtualMIDIService::deliver(Delivered item, std::unique_lock<std::mutex>& lock) {
    if (_delivery == Delivery::synchronous) {
        lock.unlock();
        hand(item);
        lock.lock();
        return;
    }
    _waiting.push_back(std::move(item));
    _changed.notify_all();
}

void VirtualMIDIService::hand(const Delivered& item) {
    if (item.notify) return item.notify();
    if (!item.packets.empty() || item.dataLost) return (*item.receive)({item.packets, item.dataLost});
    const MIDIEventPacket packet{item.stamp, item.words};
    (*item.receive)({.packets = {&packet, 1}});
}

void VirtualMIDIService::notifyAll(std::unique_lock<std::mutex>& lock) {
    std::vector<Delivered> notices;
    for (const auto& [ref, client] : _clients)
        if (client.notify) notices.push_back({.client = ref, .notify = client.notify});
    for (Delivered& notice : notices)
        deliver(std::move(notice), lock);
}

void VirtualMIDIService::setPlugged(const QString& name, Ends ends, bool plugged) {
    std::unique_lock lock(_mutex);
    for (Endpoint& endpoint : _endpoints) {
        if (endpoint.name != name || endpoint.plugged == plugged) continue;
        if (ends != Ends::all && (ends == Ends::destinations) != bool(endpoint.receive)) continue;
        endpoint.plugged = plugged;
        for (auto& [ref, port] : _ports)
            std::erase(port.connected, endpoint.handle);
        if (plugged) endpoint.handle = _nextHandle++;
    }
    notifyAll(lock);
}

void VirtualMIDIService::hold(const QString& name, bool isHeld) {
    std::unique_lock lock(_mutex);
    for (Endpoint& endpoint : _endpoints)
        if (endpoint.name == name) endpoint.held = isHeld;
    notifyAll(lock);
}

void VirtualMIDIService::cut(const QString& name) {
    std::unique_lock lock(_mutex);
    for (const Endpoint& endpoint : _endpoints)
        if (endpoint.name == name)
            for (auto& [ref, port] : _ports)
                std::erase(port.connected, endpoint.handle);
    notifyAll(lock);
}

void VirtualMIDIService::setDevice(const QString& name, const DeviceIdentity& device) {
    std::unique_lock lock(_mutex);
    for (Endpoint& endpoint : _endpoints)
        if (endpoint.name == name) endpoint.device = device;
    notifyAll(lock);
}

void VirtualMIDIService::hideName(const QString& name) {
    std::unique_lock lock(_mutex);
    for (Endpoint& endpoint : _endpoints)
        if (endpoint.name == name) endpoint.nameReadable = false;
    notifyAll(lock);
}

void VirtualMIDIService::failNext(Operation operation, MIDIStatus status) {
    const std::lock_guard lock(_mutex);
    _failures[operation] = status;
}

void VirtualMIDIService::waitUntilDelivered() {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return _waiting.empty() && _delivering == 0; });
}

void VirtualMIDIService::run() {
    std::unique_lock lock(_mutex);
    while (true) {
        _changed.wait(lock, [this] { return _ending || !_waiting.empty(); });
        if (_ending) return;
        const Delivered item = std::move(_waiting.front());
        _waiting.pop_front();
        _delivering = item.client;
        lock.unlock();
        hand(item);
        lock.lock();
        _delivering = 0;
        _changed.notify_all();
    }
}

} // namespace tessik
