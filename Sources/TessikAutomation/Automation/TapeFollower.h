#pragma once

#include "TessikKit/MIDI/MTCClock.h"

namespace tessik {

/// Watches the timecode clock and says when the tape starts, stops or jumps, and which frame it was at when a message
/// arrived.
class TapeFollower {
public:
    explicit TapeFollower(MTCClock& clock) : _clock(clock) {}

    enum class Event : std::uint8_t {
        none,
        started,
        resumed, ///< started again within two seconds of a stop, where the tape stood or would be had it gone on
        stopped, ///< noticed half a second late
        jumped   ///< back by two frames, or ahead by more than a second beyond the time gone by, or to another rate
    };
    /// Looks at the clock. While it rolls but cannot tell where, the last answer stands.
    Event follow(Uptime now);
    /// Treats the tape as not rolling until the next look, which then reports a start.
    void interrupt();
    /// Whether a start now could be the end of a dropout.
    bool mayResume(Uptime now) const;

    bool isRolling() const { return _isRolling; }
    /// Of the roll, or of the last one.
    MTCFrameRate rate() const { return _rate; }
    /// Absolute frame at the last look, or at the last one of the last roll. Goes on past 24 hours where a roll does.
    double frame() const { return _frame; }
    /// Absolute frame at an instant near the last look.
    double frameAt(Uptime stamp) const;
    /// Whatever arrived later than this may have arrived after the tape stopped: two frames after the last quarter
    /// frame before the last look.
    Uptime knownUntil() const { return _knownUntil; }

private:
    void take(Uptime now, double frame);
    double unwrapped(double frame, MTCFrameRate rate) const;
    bool isWhereItShouldBe(Uptime now, double frame) const;

    MTCClock& _clock;
    bool _isRolling = false;
    bool _mayResume = false;
    MTCFrameRate _rate = MTCFrameRate::fps30;
    double _frame = 0; // at `_at`
    Uptime _at = distantPast;
    Uptime _knownUntil = distantPast;
    bool _isStanding = false; // at the last look nothing was known of where it is, or timecode was silent
    double _stood = 0;        // frames up to here were told before that
    double _anchorFrame = 0;  // at `_anchorAt`
    Uptime _anchorAt{};
    double _framesPerNanosecond = 0;
};

} // namespace tessik
