#pragma once

#include "TessikKit/Models/UptimeClock.h"

namespace tessik {

/// Who changed an automatable field. What playback shows, and what selecting a pass or a Zero without send does to the
/// screen alone, is not a change of the console and is not reported.
enum class ChangeOrigin : std::uint8_t {
    desk,   ///< a hand at the desk
    dump,   ///< the desk transmitting its whole state
    screen, ///< a hand at the screen
    recall, ///< a snapshot
    zero    ///< Zero, sent to the desk
};

/// One change of a fader or of a channel's four switches, named by the controller that carries it on the cable.
struct ConsoleChange {
    Uptime stamp; ///< arrival of the message, or when the change was made
    int cc;       ///< fader or switch controller of a channel
    int value;    ///< 0 to 127; a switch byte for a switch controller
    ChangeOrigin origin;
};

} // namespace tessik
