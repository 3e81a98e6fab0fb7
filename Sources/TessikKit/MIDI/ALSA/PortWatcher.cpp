#include "TessikKit/MIDI/ALSA/PortWatcher.h"

#include <unistd.h>

namespace tessik {

PortWatcher::PortWatcher(std::function<void()> onChange) : _onChange(std::move(onChange)), _directory(getpid()) {
    _client = SequencerClient::open(QStringLiteral("Port Watcher"), _status);
    if (!_client) return;
    const int port =
        _client->createPort(QStringLiteral("Announcements"), SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT);
    _status = port < 0 ? port
                       : _client->subscribe({SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE},
                                            {_client->number(), std::uint8_t(port)});
    if (_status == 0) _status = _client->start(*this, std::chrono::milliseconds(20));
}

PortWatcher::~PortWatcher() {
    if (_client) _client->stop();
}

std::vector<MIDIEndpoint> PortWatcher::list(PortDirection direction) const {
    if (!_client) return {};
    const std::lock_guard lock(_mutex);
    return _directory.list(direction, _client->ports());
}

std::optional<SequencerAddress> PortWatcher::resolve(MIDIEndpointRef endpoint) const {
    const std::lock_guard lock(_mutex);
    return _directory.resolve(endpoint);
}

void PortWatcher::receive(const snd_seq_event_t& event, Uptime) {
    const snd_seq_addr_t& announced = event.data.addr; // for a subscription, the sender
    const SequencerAddress address{announced.client, announced.port};
    const std::lock_guard lock(_mutex);
    switch (event.type) {
    case SND_SEQ_EVENT_PORT_EXIT: _directory.portExited(address); break;
    case SND_SEQ_EVENT_CLIENT_EXIT: _directory.clientExited(address.client); break; // its ports are not announced
    case SND_SEQ_EVENT_PORT_START:
    case SND_SEQ_EVENT_PORT_CHANGE:
    case SND_SEQ_EVENT_CLIENT_CHANGE:
    case SND_SEQ_EVENT_PORT_SUBSCRIBED:
    case SND_SEQ_EVENT_PORT_UNSUBSCRIBED: break;
    default: return;
    }
    _changed = true;
}

void PortWatcher::receiveOverrun() {
    const std::lock_guard lock(_mutex);
    _directory.announcementsLost();
    _changed = true;
}

void PortWatcher::endBatch() {
    if (std::exchange(_changed, false)) _onChange();
}

} // namespace tessik
