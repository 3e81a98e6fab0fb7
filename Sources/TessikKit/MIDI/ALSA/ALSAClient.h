#pragma once

#include "TessikKit/MIDI/ALSA/EventDecoder.h"
#include "TessikKit/MIDI/ALSA/SequencerClient.h"

namespace tessik {

/// One client of the service: its ports, and what each does with incoming events.
class ALSAClient final : private SequencerListener {
public:
    /// Null on failure, with the reason in `status`.
    static std::shared_ptr<ALSAClient> open(const QString& name, MIDIStatus& status);
    ~ALSAClient() { stop(); }

    /// When it returns, no receive block runs or will run.
    void stop() { _sequencer->stop(); }

    SequencerAddress address(int port) const { return {_sequencer->number(), std::uint8_t(port)}; }
    /// These return the number of the new port, or an errno value below 0.
    int createReceivingPort(const QString& name, MIDIReceiveBlock receive);
    int createSendingPort(const QString& name);

    /// `midiUnknownHandle` for anything but a receiving port.
    MIDIStatus connect(std::uint8_t port, SequencerAddress source);
    MIDIStatus disconnect(std::uint8_t port, SequencerAddress source);
    /// The destination that a sending port is subscribed to.
    struct Subscription {
        MIDIEndpointRef destination = 0; // 0 for nothing
        SequencerAddress receiver;
    };
    /// Subscribes a sending port to one destination or to none, replacing any other: hardware only hears ports
    /// subscribed to it. `midiUnknownHandle` for anything but a sending port.
    MIDIStatus subscribe(std::uint8_t port, Subscription wanted);
    /// Whether a port of ours is subscribed to that one, or that one to ours.
    bool isConnected(std::uint8_t port, SequencerAddress other) const {
        return _receivers.contains(port) ? _sequencer->isSubscribed(other, address(port))
                                         : _sequencer->isSubscribed(address(port), other);
    }
    /// Sends to one destination, subscribing to it first if it is not the previous one.
    MIDIStatus send(std::uint8_t port, MIDIEndpointRef destination, SequencerAddress receiver,
                    std::span<const std::uint32_t> words);
    /// Sends to everyone subscribed to the port. Any thread.
    MIDIStatus transmit(std::uint8_t port, std::span<const std::uint32_t> words) {
        return _sequencer->send(port, std::nullopt, words);
    }

private:
    struct Receiver {
        MIDIReceiveBlock receive;
        EventDecoder decoder;
        std::vector<std::uint32_t> words; // of the current batch
    };

    explicit ALSAClient(std::unique_ptr<SequencerClient> sequencer) : _sequencer(std::move(sequencer)) {}
    void receive(const snd_seq_event_t& event, Uptime stamp) override;
    void receiveOverrun() override;
    void endBatch() override;

    std::unique_ptr<SequencerClient> _sequencer;
    std::mutex _mutex; // the client's thread holds it while a receive block runs
    std::map<std::uint8_t, Receiver> _receivers;
    Uptime _stamp{}; // of the current batch

    std::map<std::uint8_t, Subscription> _subscriptions; // by sending port; main thread
};

} // namespace tessik
