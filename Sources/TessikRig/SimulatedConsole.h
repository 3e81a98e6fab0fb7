#pragma once

#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/MIDI/MainThreadQueue.h"
#include "TessikKit/Models/ChannelState.h"
#include "TessikKit/Models/Signal.h"
#include "TessikRig/MIDICable.h"

#include <QTimer>

#include <array>
#include <deque>

namespace tessik {

/// The rig's desk: 32 or 24 inputs, 8 groups and stereo, each with a physical fader that only a hand moves, a VCA that
/// follows whoever moved last, hand or MIDI, and four switches. It is a separate device at the far end of two
/// 31,250-baud cables, a source and a destination named "Rig Console", and knows nothing of the program.
///
/// It transmits what a hand does and, when a scene is recalled, everything; it echoes nothing unless told to. Like
/// desks of its time, it marks what has changed and reads the value once the cable is free for it.
class SimulatedConsole {
public:
    static constexpr int sceneCount = 8;
    static constexpr std::size_t inputBufferBytes = 128;

    /// `inputCount`: 32 or 24. Throws nothing; `status` tells whether its ports exist.
    SimulatedConsole(MIDIService& service, const UptimeClock& clock = UptimeClock::system(), int inputCount = 32);
    ~SimulatedConsole();

    MIDIStatus status() const { return _status; }
    static QString portName() { return QStringLiteral("Rig Console"); }
    /// The MIDI channel on which the desk sends and listens, 1 to 16; messages on any other are ignored.
    void setBasicChannel(int channel) { _basicChannel = channel; }
    /// Whether it also transmits changes made by MIDI.
    void setEchoing(bool isEchoing) { _isEchoing = isEchoing; }
    /// Whether its transmissions are lost on the way, as in an overrun.
    void setLost(bool isLost) { _isLost = isLost; }

    // ---- what a hand does

    void moveFader(ChannelKind kind, int value); ///< 0 to 127
    void setSwitches(ChannelKind kind, ChannelSwitches switches);
    /// Puts a memory's values on all VCAs and switches and transmits every one. 0 to `sceneCount` - 1.
    void recallScene(int scene);
    /// Keeps what the desk holds now.
    void storeScene(int scene);

    // ---- what the desk holds

    std::vector<ChannelKind> channels() const; ///< inputs, groups, stereo
    int physicalFader(ChannelKind kind) const;
    int vca(ChannelKind kind) const;
    ChannelSwitches switches(ChannelKind kind) const;
    /// Bytes that reached its full input buffer and were lost.
    std::int64_t droppedBytes() const { return _in.droppedBytes(); }
    /// True when neither cable carries anything.
    bool isQuiet() const { return _in.isIdle() && !_sending; }

    /// After MIDI moved a fader's VCA, with the time at which the message had passed the cable.
    Signal<Uptime, ChannelKind, int> vcaMoved;
    /// After anything that the desk holds has changed.
    Signal<> changed;

    /// Advances both cables to the present. The desk's own timer calls it while they are busy; tests call it directly.
    void advance();

private:
    struct Channel {
        ChannelKind kind;
        int physical = 0;
        int vca = 0;
        ChannelSwitches switches;
    };
    struct Stored {
        int fader;
        ChannelSwitches switches;
    };
    struct Received {
        Uptime stamp{};
        std::uint32_t word = 0;
    };

    Channel* find(ChannelKind kind);
    const Channel& get(ChannelKind kind) const;
    void makeFactoryScenes();
    void tell(Uptime at, int cc);
    void startNextMessage(Uptime at);
    int currentValue(int cc) const;
    void obey(Uptime at, const ChannelMessageParser::Message& message);
    void keepTime();

    MIDIService& _service;
    const UptimeClock& _clock;
    MIDIStatus _status = 0;
    MIDIClientRef _client = 0;
    MIDIEndpointRef _source = 0;
    MIDIEndpointRef _destination = 0;
    int _basicChannel = 1;
    bool _isEchoing = false;
    bool _isLost = false;
    std::vector<Channel> _channels;
    std::array<std::vector<Stored>, sceneCount> _scenes;
    MIDICable _in{inputBufferBytes};
    ChannelMessageParser _parser;
    std::deque<int> _toTell; // controllers, once each
    struct Sending {
        int cc, value;
        Uptime doneAt;
    };
    std::optional<Sending> _sending; // on the cable now
    MainThreadQueue<Received> _received;
    QTimer _timer;
};

} // namespace tessik
