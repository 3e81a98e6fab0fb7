#pragma once

#include "TessikKit/MIDI/BeatLoop.h"
#include "TessikKit/Models/TimecodePosition.h"
#include "TessikKit/Models/UptimeClock.h"

#include <limits>

namespace tessik {

/// Tells where the tape is at an instant, even between quarter frames.
///
/// Quarter frames are counted as their pieces say, whenever they arrive; the loop smooths their times; and the label
/// that a count stands for is kept apart from both. A label, and with it the rate, is accepted when two runs agree on
/// it, the first label included. A run is eight pieces in order without a silence. After a silence a single run is
/// enough if it agrees with the missing pieces that the tape kept rolling.
///
/// The answers never run backwards except when the label jumps. Counts are in quarter frames.
class MTCLock {
public:
    /// Takes one quarter frame: its arrival, its piece (0 to 7), and what the decoder made of it.
    void quarterFrame(Uptime stamp, int piece, const std::optional<TimecodePosition>& completed);
    /// Timecode stopped: it takes two runs to tell again where the tape is.
    void stop();
    /// The tape was moved: what comes next is from another place.
    void reset() { *this = {}; }

    /// Whether the tape's position is known: not before the first label, nor while standing still.
    bool isTelling() const { return _label.has_value(); }
    /// Of the label; none before the first.
    std::optional<MTCFrameRate> rate() const;
    /// The absolute frame at an instant, on the scale of `TimecodePosition::totalFrames`: n.0 when the first piece of
    /// label n was sent. None before the first label. Never more than two frames past the last quarter frame; it holds
    /// there after a silence, or while the tape runs in reverse, until runs tell more. Wraps at 24 hours.
    std::optional<double> frame(Uptime at);
    /// When the tape will be, or was, at that frame, as far as can be told now, on the nearest of several days; none if
    /// the tape's position is unknown.
    std::optional<Uptime> instant(double frame) const;

private:
    /// What a completed run says: the rate, and the label's quarter frames minus the count.
    struct Label {
        MTCFrameRate rate;
        std::int64_t offset;
    };

    bool count(double time, int piece);
    bool countStray(double elapsed, int piece);
    void answer(double time);
    void standStill(double time);
    void takeLabel(TimecodePosition completed);
    void adopt(const Label& label);

    static std::int64_t difference(const Label& from, const Label& to);
    static bool agree(const Label& label, const Label& next, const TimecodePosition& nextSays);

    BeatLoop _loop;
    std::int64_t _count = 0; // of the last quarter frame counted
    int _piece = 0;          // its piece
    double _time = 0;        // its arrival, ns
    int _unbroken = 0;       // counted one by one up to it
    int _strays = 0;         // since it, in order among themselves
    int _lastPiece = 0;      // stray or not
    double _lastTime = 0;
    int _descending = 0; // steps back in a row

    std::optional<Label> _label;
    std::optional<Label> _labelBefore; // the silence
    bool _mayHaveStood = false;        // over it: the pieces continued where they were
    std::optional<Label> _candidate;
    double _answered = -std::numeric_limits<double>::infinity(); // quarter frames on the label's scale
    std::optional<MTCFrameRate> _answeredRate;
};

} // namespace tessik
