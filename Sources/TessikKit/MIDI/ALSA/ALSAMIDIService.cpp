#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"

#include "TessikKit/MIDI/ALSA/ALSAClient.h"
#include "TessikKit/MIDI/ALSA/PortWatcher.h"

#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tessik {

namespace {

// Handles of clients are their numbers in the sequencer, those of our own ports their addresses.
constexpr std::uint32_t handleOf(SequencerAddress address) { return std::uint32_t(address.client) << 8 | address.port; }
constexpr MIDIClientRef clientOf(std::uint32_t handle) { return handle >> 8; }
constexpr std::uint8_t portOf(std::uint32_t handle) { return std::uint8_t(handle); }

} // namespace

ALSAMIDIService::ALSAMIDIService() : _watcher(std::make_unique<PortWatcher>([this] { notifyClients(); })) {}

ALSAMIDIService::~ALSAMIDIService() {
    _watcher.reset();
    for (const auto& [number, client] : _clients)
        client->stop();
}

std::optional<QString> ALSAMIDIService::problem() {
    static constexpr const char* device = "/dev/snd/seq";
    const int opened = open(device, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (opened < 0)
        return QStringLiteral("%1: %2").arg(QLatin1String(device), QString::fromLocal8Bit(std::strerror(errno)));
    close(opened);
    return std::nullopt;
}

std::shared_ptr<ALSAClient> ALSAMIDIService::find(MIDIClientRef client) const {
    const std::lock_guard lock(_mutex);
    const auto found = _clients.find(client);
    return found == _clients.end() ? nullptr : found->second;
}

void ALSAMIDIService::notifyClients() {
    const std::lock_guard lock(_notifyMutex);
    for (const auto& [client, notify] : _notifyBlocks)
        notify();
}

MIDIStatus ALSAMIDIService::createClient(const QString& name, MIDINotifyBlock notify, MIDIClientRef& client) {
    if (_watcher->status()) return _watcher->status();
    MIDIStatus status = 0;
    const std::shared_ptr<ALSAClient> opened = ALSAClient::open(name, status);
    if (!opened) return status;
    client = opened->address(0).client;
    {
        const std::lock_guard lock(_mutex);
        _clients[client] = opened;
    }
    const std::lock_guard lock(_notifyMutex);
    if (notify) _notifyBlocks[client] = std::move(notify);
    return 0;
}

void ALSAMIDIService::disposeClient(MIDIClientRef client) {
    {
        const std::lock_guard lock(_notifyMutex);
        _notifyBlocks.erase(client);
    }
    // A receive block may wait for the lock in `transmit`: stop without it.
    const std::shared_ptr<ALSAClient> disposed = find(client);
    if (!disposed) return;
    {
        const std::lock_guard lock(_mutex);
        _clients.erase(client);
    }
    disposed->stop();
}

MIDIStatus ALSAMIDIService::addPort(MIDIClientRef client, std::uint32_t& handle,
                                    const std::function<int(ALSAClient&)>& create) {
    if (_watcher->status()) return _watcher->status();
    const std::shared_ptr<ALSAClient> owner = find(client);
    if (!owner) return midiUnknownHandle;
    const int port = create(*owner);
    if (port < 0) return port;
    handle = handleOf(owner->address(port));
    return 0;
}

MIDIStatus ALSAMIDIService::createInputPort(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                                            MIDIPortRef& port) {
    return addPort(client, port,
                   [&](ALSAClient& owner) { return owner.createReceivingPort(name, std::move(receive)); });
}

MIDIStatus ALSAMIDIService::createOutputPort(MIDIClientRef client, const QString& name, MIDIPortRef& port) {
    return addPort(client, port, [&](ALSAClient& owner) { return owner.createSendingPort(name); });
}

std::vector<MIDIEndpoint> ALSAMIDIService::sources() const { return _watcher->list(PortDirection::source); }
std::vector<MIDIEndpoint> ALSAMIDIService::destinations() const { return _watcher->list(PortDirection::destination); }

MIDIStatus ALSAMIDIService::connectSource(MIDIPortRef inputPort, MIDIEndpointRef source) {
    const std::shared_ptr<ALSAClient> owner = find(clientOf(inputPort));
    const std::optional<SequencerAddress> address = _watcher->resolve(source);
    return owner && address ? owner->connect(portOf(inputPort), *address) : midiUnknownHandle;
}

MIDIStatus ALSAMIDIService::disconnectSource(MIDIPortRef inputPort, MIDIEndpointRef source) {
    const std::shared_ptr<ALSAClient> owner = find(clientOf(inputPort));
    const std::optional<SequencerAddress> address = _watcher->resolve(source);
    return owner && address ? owner->disconnect(portOf(inputPort), *address) : midiUnknownHandle;
}

MIDIStatus ALSAMIDIService::connectDestination(MIDIPortRef outputPort, MIDIEndpointRef destination) {
    const std::shared_ptr<ALSAClient> owner = find(clientOf(outputPort));
    if (owner && destination == 0) return owner->subscribe(portOf(outputPort), {});
    const std::optional<SequencerAddress> address = _watcher->resolve(destination);
    return owner && address ? owner->subscribe(portOf(outputPort), {destination, *address}) : midiUnknownHandle;
}

bool ALSAMIDIService::isConnected(MIDIPortRef port, MIDIEndpointRef endpoint) const {
    const std::shared_ptr<ALSAClient> owner = find(clientOf(port));
    const std::optional<SequencerAddress> address = _watcher->resolve(endpoint);
    return owner && address && owner->isConnected(portOf(port), *address);
}

MIDIStatus ALSAMIDIService::send(MIDIPortRef outputPort, MIDIEndpointRef destination,
                                 std::span<const std::uint32_t> words) {
    const std::shared_ptr<ALSAClient> owner = find(clientOf(outputPort));
    const std::optional<SequencerAddress> address = _watcher->resolve(destination);
    return owner && address ? owner->send(portOf(outputPort), destination, *address, words) : midiUnknownHandle;
}

MIDIStatus ALSAMIDIService::createSource(MIDIClientRef client, const QString& name, MIDIEndpointRef& source) {
    return createOutputPort(client, name, source);
}

MIDIStatus ALSAMIDIService::createDestination(MIDIClientRef client, const QString& name, MIDIReceiveBlock receive,
                                              MIDIEndpointRef& destination) {
    return createInputPort(client, name, std::move(receive), destination);
}

MIDIStatus ALSAMIDIService::transmit(MIDIEndpointRef source, std::span<const std::uint32_t> words) {
    const std::shared_ptr<ALSAClient> owner = find(clientOf(source));
    return owner ? owner->transmit(portOf(source), words) : midiUnknownHandle;
}

} // namespace tessik
