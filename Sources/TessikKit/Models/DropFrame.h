#pragma once

#include <algorithm>
#include <cstdint>

/// 29.97 drop: labels run ahead of real frames, because two are skipped at the start of every minute except each tenth.
/// Both are counted from 00:00:00:00, labels as `TimecodePosition::totalFrames` does; neither is negative.
namespace tessik::DropFrame {

inline constexpr std::int64_t labelsPerMinute = 60 * 30;
inline constexpr std::int64_t framesPerMinute = labelsPerMinute - 2;
inline constexpr std::int64_t framesPerTenMinutes = 10 * labelsPerMinute - 9 * 2;

/// The frame with that label. A skipped label counts as the next one that is not.
constexpr std::int64_t frameOfLabel(std::int64_t label) {
    const std::int64_t minutes = label / labelsPerMinute;
    if (minutes % 10 != 0) label = std::max(label, minutes * labelsPerMinute + 2);
    return label - 2 * (minutes - minutes / 10);
}

constexpr std::int64_t labelOfFrame(std::int64_t frame) {
    const std::int64_t tens = frame / framesPerTenMinutes;
    const std::int64_t rest = frame % framesPerTenMinutes; // its first minute is a full one
    return frame + 2 * (9 * tens + std::max<std::int64_t>(0, (rest - 2) / framesPerMinute));
}

} // namespace tessik::DropFrame
