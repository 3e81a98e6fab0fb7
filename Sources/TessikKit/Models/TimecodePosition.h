#pragma once

#include "TessikKit/Models/MTCFrameRate.h"

namespace tessik {

/// A timecode label with the rate it was read at. Nothing is validated: a label keeps the fields it was given until it
/// is moved.
///
/// There is no drop-frame arithmetic: 29.97 drop counts as 30, so count and label are exact inverses at every rate.
/// Compare `totalFrames` to learn which of two positions is earlier.
struct TimecodePosition {
    MTCFrameRate frameRate = MTCFrameRate::fps30;
    std::int64_t hours = 0; ///< not wrapped at 24
    std::int64_t minutes = 0;
    std::int64_t seconds = 0;
    std::int64_t frames = 0;

    /// The label of a frame count; a negative count is treated as 0.
    static TimecodePosition fromTotalFrames(MTCFrameRate rate, std::int64_t totalFrames);

    /// Frames since 00:00:00:00. An overflow stops the program, here and in `addFrames`.
    std::int64_t totalFrames() const;
    /// Moves by `n` frames, backwards if negative but never below 0, and leaves every field in range.
    void addFrames(std::int64_t n);

    /// The same label with its hours wrapped at 24, as a machine expects it.
    TimecodePosition withinDay() const;

    /// The farthest from zero that a frame or a distance from outside may be: within it, a few can be added and
    /// subtracted without overflow.
    static constexpr std::int64_t farthest = std::int64_t(1) << 60;
    /// With every field clamped so that the label stays within that, at any rate.
    TimecodePosition bounded() const;

    /// "01:02:03:04", with colons at every rate.
    QString displayString() const;

    friend bool operator==(const TimecodePosition&, const TimecodePosition&) = default;
};

} // namespace tessik
