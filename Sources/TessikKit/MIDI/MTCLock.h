#pragma once

#include "TessikKit/Models/TimecodePosition.h"
#include "TessikKit/Models/UptimeClock.h"

#include <array>
#include <limits>

namespace tessik {

/// Tells where the tape is at an instant, between the quarter frames too: a second-order delay-locked loop over their
/// arrival stamps, wide when it locks and 1 Hz after.
///
/// The loop counts pieces; what label a count stands for is kept apart from it and changed only by a second run that
/// agrees, so that a single spliced run moves nothing. While it is locked, the answers never run backwards but for a
/// jump of the label. Times inside are nanoseconds, counts are quarter frames.
class MTCLock {
public:
    /// Takes one quarter frame: its arrival, its piece (0 to 7), and what the decoder made of it.
    void quarterFrame(Uptime stamp, int piece, const std::optional<TimecodePosition>& completed);
    /// Timecode stopped or was moved by a full frame.
    void reset() { *this = {}; }

    /// The absolute frame at an instant, on the scale of `TimecodePosition::totalFrames`: n.0 when the first piece of
    /// the label n was sent. None until a run has completed. Never more than two frames past the last quarter frame,
    /// and standing still while the tape runs in reverse.
    std::optional<double> frame(Uptime at);
    /// When the tape will be, or was, at that frame as far as can be told now; none while not locked or standing still.
    std::optional<Uptime> instant(double frame) const;

private:
    struct Arrival {
        double time = 0;
        int piece = 0;
    };

    /// What a completed run says: the rate, and the label's quarter frames less `_count`.
    struct Label {
        MTCFrameRate rate;
        std::int64_t offset;
        friend bool operator==(const Label&, const Label&) = default;
    };

    bool isAcquired() const { return _nominal > 0; }
    void acquire(MTCFrameRate rate);
    void lose();
    void start(const Arrival& arrival, std::int64_t count);
    void track(const Arrival& arrival);
    void noteOutlier(const Arrival& arrival);
    void relock();
    void standStill(double time);
    void takeLabel(TimecodePosition completed);
    void adopt(const Label& label);

    std::array<Arrival, 8> _recent{}; // the last arrivals, the newest last
    int _recentCount = 0;
    int _descending = 0; // steps back in a row

    double _nominal = 0; // duration of a quarter frame at the rate's own speed; 0 until a run has completed
    double _period = 0;  // as it is now
    double _time = 0;    // when quarter frame `_count` was due, jitter taken out
    std::int64_t _count = 0;
    int _piece = 0;        // of quarter frame `_count`
    int _accepted = 0;     // quarter frames since the loop started
    double _widenedAt = 0; // the bandwidth narrows from here
    double _meanError = 0;
    double _variance = 0;
    std::array<Arrival, 3> _outlierRun{}; // the last outliers, the newest last
    int _outliers = 0;                    // in a row
    int _regularOutliers = 0;             // of these the last ones that keep step with each other

    std::optional<Label> _label; // none while standing still
    std::optional<Label> _candidate;
    std::optional<double> _heldFrame; // the answer while standing still
    double _answered = -std::numeric_limits<double>::infinity();
};

} // namespace tessik
