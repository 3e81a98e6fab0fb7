#pragma once

#include "TessikKit/Models/MIDIChannelMapping.h"
#include "TessikKit/Models/UptimeClock.h"

#include <deque>
#include <vector>

namespace tessik {

/// What hands put on top of the automation in UPDATE: a trim for each fader, and the bits of each switch byte that are
/// held; and what a recall or a Zero put in its place up to its next event. Remembers half a second, to take back what
/// turns out to be no hand.
class UpdateRides {
public:
    /// The output for an automation value: faders trimmed and clamped to 0 to 127, held switches as they are held; the
    /// value that stands in its place, if any.
    int output(int cc, int automation) const;
    /// The fader moved by a difference.
    void moveBy(Uptime stamp, int faderCC, int difference);
    /// The output is to be `value` where the automation says `automation`.
    void setOutput(Uptime stamp, int faderCC, int value, int automation);
    /// The switches that differ between two bytes are held as `now` says.
    void press(Uptime stamp, int switchCC, int before, int now);
    /// The output is to be `value` whatever the automation says, until a hand rides the fader, or `release`.
    void replace(Uptime stamp, int cc, int value);
    void release(int cc) { _rides[std::size_t(cc)].inPlace.reset(); }
    /// Takes back what was done from then on, at most half a second ago. Returns the lanes concerned.
    std::vector<int> takeBackSince(Uptime stamp);

    /// Whether a lane's output may differ from the automation.
    bool isRidden(int cc) const { return _rides[std::size_t(cc)] != Ride(); }
    void clear() { *this = {}; }

private:
    struct Ride {
        int trim = 0;
        int heldBits = 0;
        int held = 0; // of the bits in `heldBits`
        std::optional<int> inPlace;
        friend bool operator==(const Ride&, const Ride&) = default;
    };
    struct Undo {
        Uptime stamp;
        int cc;
        Ride before;
    };

    Ride& change(Uptime stamp, int cc);

    std::array<Ride, MIDIChannelMapping::controllerCount> _rides;
    std::deque<Undo> _undos; // oldest first
};

} // namespace tessik
