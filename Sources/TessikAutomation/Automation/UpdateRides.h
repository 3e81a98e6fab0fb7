#pragma once

#include "TessikKit/Models/MIDIChannelMapping.h"
#include "TessikKit/Models/UptimeClock.h"

#include <deque>
#include <vector>

namespace tessik {

/// What UPDATE puts on top of the automation: a hand's trim of each fader, the switch bits held down, and what a recall
/// or a Zero put in its place until its next event. Remembers half a second, to take back what proves to be a dump.
class UpdateRides {
public:
    /// The output for an automation value: faders trimmed and clamped to 0 to 127, held switches as held, or the value
    /// that replaces it, if any.
    int output(int cc, int automation) const;
    /// The fader was moved by that much.
    void moveBy(Uptime stamp, int faderCC, int difference);
    /// Sets the trim so that the output is `value` while the automation says `automation`.
    void setOutput(Uptime stamp, int faderCC, int value, int automation);
    /// Holds the switches that differ between two bytes as `now` has them.
    void press(Uptime stamp, int switchCC, int before, int now);
    /// Makes the output `value`, whatever the automation says, until a hand rides the fader or `release` is called.
    void replace(Uptime stamp, int cc, int value);
    void release(int cc) { _rides[std::size_t(cc)].inPlace.reset(); }
    /// Takes back everything since then, at most half a second. Returns the lanes concerned.
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
