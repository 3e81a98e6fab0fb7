#pragma once

#include "TessikKit/MIDI/ALSA/SequencerClient.h"

namespace tessik {

/// Follows which ports the sequencer has, by its announcements, and knows their handles and ids. Any thread.
class PortWatcher final : private SequencerListener {
public:
    /// `onChange` runs on the watcher's thread, once for all announcements within 20 ms.
    explicit PortWatcher(std::function<void()> onChange);
    ~PortWatcher();

    /// 0, or why nothing can be followed.
    MIDIStatus status() const { return _status; }
    std::vector<MIDIEndpoint> list(PortDirection direction) const;
    std::optional<SequencerAddress> resolve(MIDIEndpointRef endpoint) const;

private:
    void receive(const snd_seq_event_t& event, Uptime stamp) override;
    void receiveOverrun() override;
    void endBatch() override;

    const std::function<void()> _onChange;
    mutable std::mutex _mutex;
    mutable PortDirectory _directory; // updated by each enumeration
    bool _changed = false;            // watcher's thread only
    MIDIStatus _status = 0;
    std::unique_ptr<SequencerClient> _client;
};

} // namespace tessik
