#include "TessikAutomation/Session/LocateTarget.h"

namespace tessik::LocateTarget {

TimecodePosition start(const LocatorStore& locators, const std::optional<TimecodePosition>& currentPosition) {
    const MTCFrameRate rate = currentPosition ? currentPosition->frameRate : MTCFrameRate::fps30;
    return locators.start().value_or(TimecodePosition::fromTotalFrames(rate, 0));
}

std::optional<TimecodePosition> songEnd(const LocatorStore& locators, const std::optional<TimecodePosition>& passEnd) {
    return locators.end() ? locators.end() : passEnd;
}

TimecodePosition passEnd(TimecodePosition start, std::optional<std::int64_t> lastOffset) {
    if (lastOffset) start.addFrames(*lastOffset);
    return start;
}

} // namespace tessik::LocateTarget
