#pragma once

#include "TessikAutomation/Desk/DeskPacer.h"
#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikKit/Models/ConsoleModel.h"
#include "TessikKit/Models/Published.h"

#include <QTimer>

namespace tessik {

/// One channel's automatable state, as asserted to the desk.
struct DeskChannelState {
    ChannelKind kind;
    int faderValue = 0; ///< 0 to 127
    ChannelSwitches switches;
};

/// The path to the console's MIDI IN: the chosen destination, and what the desk is believed to hold.
///
/// Everything goes through one pacer, because the desk is on a 31,250-baud cable: only the latest value of each
/// controller waits. The console does not echo, so what is sent is assumed to have arrived; a desk that was away, or
/// listening on another channel, gets what it is owed once it can be reached. Main thread only.
class MIDIOutputManager {
public:
    explicit MIDIOutputManager(MIDIService& service, const UptimeClock& clock = UptimeClock::system());

    /// Creates the client "TessikAutomation Output". Then call `refreshDestinations` once.
    void setupClient();
    void refreshDestinations() { port.refreshDestinations(); }
    void selectDestination(std::optional<std::int32_t> uniqueID) { port.selectDestination(uniqueID); }

    /// Availability, choice and status text of "MIDI Out".
    MIDIDestinationPort port;
    /// MIDI channel of every message sent, numbered as on the console: 1 to 16. Clamped to that range where used.
    QProperty<int> midiChannel{1};

    /// How a value is meant: playback skips what the desk is believed to hold, an assertion skips nothing, and a
    /// correction overtakes everything that waits.
    using Urgency = DeskPacer::Urgency;
    void sendFader(ChannelKind kind, int value, Urgency urgency = Urgency::assertion);
    void sendSwitches(ChannelKind kind, ChannelSwitches switches, Urgency urgency = Urgency::assertion);
    void send(int cc, int value, Urgency urgency);
    /// Sends a whole state, or what is known of one, in the order that is safe for the ears: the switches of channels
    /// that end muted, all faders, the other switches.
    void assertState(std::span<const DeskChannelState> channels);
    void assertState(const ControllerValues& values);

    /// What the desk is believed to hold on a controller; none if nothing was ever sent or received.
    std::optional<int> believedValue(int cc) const { return _pacer.believed(cc); }
    /// Reports what came from the desk. A value that crossed one of ours on the cable is sent back. False for what
    /// comes back in a loop and must not reach the model: nobody has moved anything.
    bool noteReceived(Uptime stamp, int cc, int value);
    /// Messages from the desk were lost, so what is believed may be wrong: forgets it, and sends once more what was
    /// asked for.
    void assertAgain();
    /// What is sent comes straight back: the desk echoes, or Out is cabled to In.
    Published<bool, MIDIOutputManager> isLoop{false};
    /// True while anything waits to be sent, or a hand and a message have crossed and the outcome is open.
    bool isBusy() const { return _pacer.hasWaiting() || !_pacer.isSettled(); }
    /// Values replaced by a newer one of the same controller before they were sent.
    std::int64_t overtakenCount() const { return _pacer.overtakenCount(); }
    /// Messages a second to the desk; the setting "midiOutMessagesPerSecond".
    void setMessagesPerSecond(int rate) { _pacer.setMessagesPerSecond(rate); }

    /// Zeroes every visible channel of the model and, if asked to, the desk.
    void resetChannels(ConsoleModel& consoleModel, bool sendToConsole);

    /// Sends what is due now. The manager's own timer calls it while anything waits; tests call it directly.
    void pump();

private:
    void ask(int cc, int value, Urgency urgency);

    const UptimeClock& _clock;
    DeskPacer _pacer;
    QTimer _timer;
    QPropertyNotifier _channelNotifier;
    Signal<MIDIDestinationPort::Change>::Connection _portListener;
};

} // namespace tessik
