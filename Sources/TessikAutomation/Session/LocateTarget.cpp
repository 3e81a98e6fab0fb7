#include "TessikAutomation/Session/LocateTarget.h"

#include <algorithm>

namespace tessik::LocateTarget {

TimecodePosition start(const LocatorStore& locators, const std::optional<TimecodePosition>& currentPosition) {
    const MTCFrameRate rate = currentPosition ? currentPosition->frameRate : MTCFrameRate::fps30;
    return locators.start.value().value_or(TimecodePosition::fromTotalFrames(rate, 0));
}

std::optional<TimecodePosition> songEnd(const LocatorStore& locators, const std::optional<TimecodePosition>& passEnd) {
    return locators.end.value() ? locators.end.value() : passEnd;
}

TimecodePosition passEnd(TimecodePosition start, std::optional<std::int64_t> lastOffset) {
    constexpr std::int64_t farthest = TimecodePosition::farthest; // a file may hold any offset
    if (lastOffset) start.addFrames(std::clamp(*lastOffset, -farthest, farthest));
    return start;
}

} // namespace tessik::LocateTarget
