#include "TessikKit/MIDI/ALSA/ALSAClient.h"

namespace tessik {

std::shared_ptr<ALSAClient> ALSAClient::open(const QString& name, MIDIStatus& status) {
    std::unique_ptr<SequencerClient> sequencer = SequencerClient::open(name, status);
    if (!sequencer) return nullptr;
    const std::shared_ptr<ALSAClient> client(new ALSAClient(std::move(sequencer)));
    status = client->_sequencer->start(*client);
    return status == 0 ? client : nullptr;
}

int ALSAClient::createReceivingPort(const QString& name, MIDIReceiveBlock receive) {
    const std::lock_guard lock(_mutex); // events that arrive at once wait for their receiver
    const int port = _sequencer->createPort(name, SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE);
    if (port >= 0) _receivers[std::uint8_t(port)].receive = std::move(receive);
    return port;
}

int ALSAClient::createSendingPort(const QString& name) {
    const int port = _sequencer->createPort(name, SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ);
    if (port >= 0) _subscriptions[std::uint8_t(port)] = {};
    return port;
}

MIDIStatus ALSAClient::connect(std::uint8_t port, SequencerAddress source) {
    return _receivers.contains(port) ? _sequencer->subscribe(source, address(port)) : midiUnknownHandle;
}

MIDIStatus ALSAClient::disconnect(std::uint8_t port, SequencerAddress source) {
    return _receivers.contains(port) ? _sequencer->unsubscribe(source, address(port)) : midiUnknownHandle;
}

MIDIStatus ALSAClient::subscribe(std::uint8_t port, Subscription wanted) {
    const auto found = _subscriptions.find(port);
    if (found == _subscriptions.end()) return midiUnknownHandle;
    Subscription& current = found->second;
    if (current.destination != 0 && current.destination != wanted.destination)
        _sequencer->unsubscribe(address(port), current.receiver); // may be gone already: no matter
    current = {};
    if (wanted.destination == 0) return 0;
    const MIDIStatus status = _sequencer->subscribe(address(port), wanted.receiver);
    if (status == 0) current = wanted;
    return status;
}

MIDIStatus ALSAClient::send(std::uint8_t port, MIDIEndpointRef destination, SequencerAddress receiver,
                            std::span<const std::uint32_t> words) {
    const auto current = _subscriptions.find(port);
    if (current == _subscriptions.end()) return midiUnknownHandle;
    if (current->second.destination != destination)
        if (const MIDIStatus status = subscribe(port, {destination, receiver})) return status;
    return _sequencer->send(port, receiver, words);
}

void ALSAClient::receive(const snd_seq_event_t& event, Uptime stamp) {
    const std::lock_guard lock(_mutex);
    _stamp = stamp;
    const auto receiver = _receivers.find(event.dest.port);
    if (receiver != _receivers.end()) receiver->second.decoder.decode(event, receiver->second.words);
}

void ALSAClient::receiveOverrun() {
    endBatch();
    const std::lock_guard lock(_mutex);
    for (auto& [port, receiver] : _receivers) {
        receiver.decoder.reset();
        receiver.receive({.packets = {}, .dataLost = true});
    }
}

void ALSAClient::endBatch() {
    const std::lock_guard lock(_mutex);
    for (auto& [port, receiver] : _receivers) {
        for (std::span<const std::uint32_t> rest = receiver.words; !rest.empty();) {
            const MIDIEventPacket packet{_stamp, nextPacket(rest)};
            rest = rest.subspan(packet.words.size());
            receiver.receive({.packets = {&packet, 1}});
        }
        receiver.words.clear();
    }
}

} // namespace tessik
