#pragma once

#include "TessikAutomation/Desk/EchoWatch.h"
#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <array>
#include <deque>
#include <functional>
#include <vector>

namespace tessik {

/// Decides what goes to the desk next: for each of the 128 controllers only the latest value waits, first come first
/// served, and a token bucket limits the rate to what the cable carries. Knows no ports and no timers.
class DeskPacer {
public:
    enum class Urgency : std::uint8_t {
        playback,  ///< skipped where the desk is believed to hold the value already
        assertion, ///< always sent, after everything that waits
        correction ///< always sent, ahead of everything that waits
    };

    static constexpr int defaultMessagesPerSecond = 1000;
    static constexpr int maxBurst = 16; ///< messages saved up during a pause

    /// At least 1.
    void setMessagesPerSecond(int rate);

    /// Asks for `value` (0 to 127) on a controller (0 to 127). While the desk is away the value is owed.
    void ask(int cc, int value, Urgency urgency);
    /// Reports what came from the desk: that is what it now holds, and it replaces what waits or is owed there, unless
    /// it echoes something sent. If it may have crossed a different value of ours on the cable, it is sent back once
    /// the hand rests, so that both ends agree. A `cc` above 127, from a malformed word, is ignored. False for what
    /// comes back in a loop: nobody has moved anything.
    bool noteReceived(Uptime stamp, int cc, int value);

    /// A different desk: nothing is known or owed.
    void forget();
    /// The desk went away: nothing waits or is believed any more, and what was asked of it is owed.
    void lose();
    /// The desk is back: everything owed is asked for again, in the order that is safe for the ears.
    void regain();

    /// Controllers in the order in which a whole state is sent: the switch bytes of channels that end muted, all
    /// faders, the other switch bytes. `valueOf` returns a controller's value, or none to leave it out.
    static std::vector<int> safeOrder(const std::function<std::optional<int>(int cc)>& valueOf);

    struct Message {
        int cc;
        int value;
    };
    /// The next message that the rate allows at `now`; none if nothing waits or it is not yet time. It counts as sent
    /// once `noteSent` is called.
    std::optional<Message> next(Uptime now);
    void noteSent(Uptime now, Message message);

    bool hasWaiting() const { return !_order.empty(); }
    /// False while two values have crossed and it is not yet clear which one the desk ended on.
    bool isSettled() const { return _doubtful.empty(); }
    /// Whether what is sent comes back.
    const EchoWatch& echoes() const { return _echoes; }
    std::optional<int> believed(int cc) const { return _controllers[std::size_t(cc)].believed; }
    std::int64_t overtakenCount() const { return _overtaken; }

private:
    struct Controller {
        std::optional<int> waiting;
        std::optional<int> asked; ///< the last value asked for, unless a hand has changed it since
        std::optional<int> believed;
        std::optional<int> heard; ///< from the desk, which may hold another value by now; the next ask replaces it
        Uptime heardAt = distantPast;
        int sent = 0;                 ///< the last value
        Uptime landsAt = distantPast; ///< when it has passed the desk's cable
        bool isResend = false;        ///< what waits or was last sent is a hand's value sent back
    };
    void settle(Uptime now);

    std::array<Controller, MIDIChannelMapping::controllerCount> _controllers;
    std::deque<int> _order;     // controllers with a waiting value, once each
    std::vector<int> _doubtful; // controllers with a value heard, once each
    EchoWatch _echoes;
    double _perSecond = defaultMessagesPerSecond;
    double _tokens = maxBurst;
    Uptime _tokensAt = distantPast;
    Uptime _cableFreeAt = distantPast;
    bool _present = false;
    std::int64_t _overtaken = 0;
};

} // namespace tessik
