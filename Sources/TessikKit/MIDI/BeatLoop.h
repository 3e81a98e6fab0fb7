#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace tessik {

/// Arrival of a quarter frame: nanoseconds, and its number in a running count.
struct Beat {
    double time = 0;
    std::int64_t count = 0;
};

/// Removes the jitter from the arrivals of quarter frames: a second-order delay-locked loop, wide after a start and 1
/// Hz later. It starts from a line through the last arrivals, and starts again when they no longer fit.
class BeatLoop {
public:
    static constexpr int runsKept = 3; // of eight, the most that a start looks back on

    /// Forgets the arrivals so far but keeps the period.
    void forget() { _size = 0; }
    /// Remembers an arrival without following it.
    void note(const Beat& beat);
    /// Begins to follow the remembered arrivals, of which there must be at least one. Takes their own period if they
    /// span two runs or more, unless it is to be kept.
    void start(bool keepsPeriod);
    /// Follows an arrival.
    void track(const Beat& beat);

    bool isOutlier(const Beat& beat) const;
    double countAt(double time) const { return double(_count) + (time - _time) / _period; }
    double timeOf(double count) const { return _time + (count - double(_count)) * _period; }
    double period() const { return _period; } ///< of a quarter frame, ns; a guess before the first start

private:
    struct Line {
        double time, period, deviation; // at the last beat; period and deviation in ns
        int fitting;                    // beats that are not far from it
    };

    std::span<const Beat> recent(int most) const;
    void follow(std::span<const Beat> beats, bool keepsPeriod);
    Line lineThrough(std::span<const Beat> beats, bool keepsPeriod) const;
    void noteOutlier(const Beat& beat);

    std::array<Beat, 8 * runsKept> _recent{}; // newest last
    int _size = 0;

    double _period = 1e7;
    double _time = 0; // when quarter frame `_count` was due, without jitter
    std::int64_t _count = 0;
    int _accepted = 0;     // quarter frames since the start
    double _widenedAt = 0; // the bandwidth narrows from here
    double _meanError = 0;
    double _variance = 0;
    std::uint32_t _outliers = 0; // a bit for each of the last quarter frames, newest lowest
    int _regularOutliers = 0;    // the latest of these that keep step with each other
};

} // namespace tessik
