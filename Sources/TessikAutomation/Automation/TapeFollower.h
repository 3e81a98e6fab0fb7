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
        resumed, ///< started again within two seconds of a stop, where the tape stood or would be had it kept rolling
        stopped, ///< noticed half a second late
        jumped   ///< back by two frames, or ahead by more than a second beyond the elapsed time, or to another rate
    };
    /// Looks at the clock. While the clock rolls without knowing where, the last answer stands.
    Event follow(Uptime now);
    /// Treats the tape as not rolling until the next look, which then reports a start.
    void interrupt();
    /// Whether a start now could end a dropout.
    bool mayResume(Uptime now) const;

    bool isRolling() const { return _isRolling; }
    /// Of this roll, or the last one.
    MTCFrameRate rate() const { return _rate; }
    /// Absolute frame at the last look, or the last look of the last roll. Keeps counting past 24 hours within a roll.
    double frame() const { return _frame; }
    /// Absolute frame at an instant close to the last look.
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
    bool _isStanding = false; // at the last look its position was unknown, or timecode was silent
    double _stood = 0;        // frames up to here were reported before that
    double _anchorFrame = 0;  // at `_anchorAt`
    Uptime _anchorAt{};
    double _framesPerNanosecond = 0;
};

} // namespace tessik
