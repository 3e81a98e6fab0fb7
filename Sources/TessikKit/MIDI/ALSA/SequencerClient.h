#pragma once

#include "TessikKit/MIDI/ALSA/PortDirectory.h"

#include <alsa/asoundlib.h>

#include <mutex>
#include <thread>

namespace tessik {

/// Gets what a sequencer client receives, on that client's thread.
class SequencerListener {
public:
    virtual void receive(const snd_seq_event_t& event, Uptime stamp) = 0;
    /// Everything that was waiting before what comes next was lost.
    virtual void receiveOverrun() = 0;
    /// The events received since the last call are all that was waiting.
    virtual void endBatch() = 0;

protected:
    ~SequencerListener() = default;
};

/// One client of the ALSA sequencer and the thread that reads its input. Results below 0 are errno values.
class SequencerClient {
public:
    /// Null on failure, with the reason in `status`.
    static std::unique_ptr<SequencerClient> open(const QString& name, MIDIStatus& status);
    ~SequencerClient();
    SequencerClient(const SequencerClient&) = delete;
    SequencerClient& operator=(const SequencerClient&) = delete;

    /// Starts reading. When something has arrived, waits `settle` for more before reading it.
    MIDIStatus start(SequencerListener& listener, std::chrono::milliseconds settle = {});
    /// Ends reading: when it returns, the listener is not and will not be called.
    void stop();

    std::uint8_t number() const { return _number; }
    /// Returns the port's number.
    int createPort(const QString& name, unsigned capability);
    /// One end is a port of ours. Succeeds if they are already subscribed; returns `midiPortHeld` if someone else holds
    /// the other end exclusively, which the sequencer does not distinguish.
    MIDIStatus subscribe(SequencerAddress sender, SequencerAddress receiver) {
        const MIDIStatus status = link(snd_seq_subscribe_port, sender, receiver);
        return status == midiPortHeld && isSubscribed(sender, receiver) ? 0 : status;
    }
    bool isSubscribed(SequencerAddress sender, SequencerAddress receiver) {
        return link(snd_seq_get_port_subscription, sender, receiver) == 0;
    }
    MIDIStatus unsubscribe(SequencerAddress sender, SequencerAddress receiver) {
        return link(snd_seq_unsubscribe_port, sender, receiver);
    }
    /// Sends words from a port of ours, without blocking, to `receiver` or else to all subscribers of the port.
    /// `midiWouldBlock` if a receiver or this client has no room. Any thread.
    MIDIStatus send(std::uint8_t fromPort, std::optional<SequencerAddress> receiver,
                    std::span<const std::uint32_t> words);
    /// All ports of the sequencer, ordered by address.
    std::vector<SequencerPort> ports() const;

private:
    SequencerClient(snd_seq_t* sequencer, const QString& name);
    void run(SequencerListener& listener, std::chrono::milliseconds settle);
    MIDIStatus read(SequencerListener& listener);
    MIDIStatus link(int (*operation)(snd_seq_t*, snd_seq_port_subscribe_t*), SequencerAddress sender,
                    SequencerAddress receiver);

    snd_seq_t* const _sequencer;
    const QString _name;
    const std::uint8_t _number;
    std::mutex _sending; // the library keeps one buffer for sending
    int _stopSignal = -1;
    std::thread _thread;
};

} // namespace tessik
