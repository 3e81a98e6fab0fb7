#pragma once

#include "TessikKit/Models/MIDIChannelMapping.h"
#include "TessikKit/Models/UptimeClock.h"

#include <deque>

namespace tessik {

/// Where the physical faders stand, as far as hands have shown. A dump reports the desk's VCAs, not its faders, so it
/// makes the faders of its channels unknown, including those reported before it was recognized as a dump.
class DeskHands {
public:
    /// How long before the message that gives it away a dump may have begun.
    static constexpr Uptime dumpWindow = std::chrono::milliseconds(500);

    /// Takes a hand's message; without a value, the hand counts as unmoved. Returns where the fader stood before, none
    /// if that was unknown.
    std::optional<int> moved(Uptime stamp, int faderCC, std::optional<int> value);
    /// Takes a message of a dump.
    void dumped(Uptime stamp, int cc);

    /// None while unknown.
    std::optional<int> value(int faderCC) const { return _values[std::size_t(faderCC)]; }

private:
    struct Message {
        Uptime stamp;
        int cc;
    };

    ControllerValues _values;
    std::deque<Message> _recent; // of hands, in the last half second
};

} // namespace tessik
