#pragma once

#include "TessikKit/Models/MIDIChannelMapping.h"
#include "TessikKit/Models/UptimeClock.h"

#include <deque>

namespace tessik {

/// Where the physical faders stand, as far as hands have told. A dump tells what the desk's VCAs hold and so makes the
/// faders of its channels unknown, also of those whose messages came before it could be told from hands.
class DeskHands {
public:
    /// So long before its message that tells one a dump may have begun.
    static constexpr Uptime dumpWindow = std::chrono::milliseconds(500);

    /// Takes a hand's message; without a value where it does not tell where the hand is, who then counts as not moved.
    /// Returns where the fader stood before; none where that was unknown.
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
