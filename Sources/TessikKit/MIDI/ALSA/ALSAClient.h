#pragma once

#include "TessikKit/MIDI/ALSA/EventDecoder.h"
#include "TessikKit/MIDI/ALSA/SequencerClient.h"

namespace tessik {

/// One client of the service: its ports, and what each does with the events that come in.
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

    /// `midiUnknownHandle` for other ports than the receiving ones.
    MIDIStatus connect(std::uint8_t port, SequencerAddress source);
    MIDIStatus disconnect(std::uint8_t port, SequencerAddress source);
    /// Sends to one destination, which the port stays subscribed to until it sends to another: hardware hears none but
    /// those subscribed to it. `midiUnknownHandle` for other ports than the sending ones.
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
        std::vector<std::uint32_t> words; // of the batch under way
    };

    explicit ALSAClient(std::unique_ptr<SequencerClient> sequencer) : _sequencer(std::move(sequencer)) {}
    void receive(const snd_seq_event_t& event, Uptime stamp) override;
    void receiveOverrun() override;
    void endBatch() override;

    std::unique_ptr<SequencerClient> _sequencer;
    std::mutex _mutex; // the client's thread holds it while a receive block runs
    std::map<std::uint8_t, Receiver> _receivers;
    Uptime _stamp{}; // of the batch under way

    /// What a sending port is subscribed to.
    struct Subscription {
        MIDIEndpointRef destination = 0; // 0 for nothing
        SequencerAddress receiver;
    };
    MIDIStatus subscribe(std::uint8_t port, Subscription wanted);
    std::map<std::uint8_t, Subscription> _subscriptions; // by sending port; main thread
};

} // namespace tessik
