#pragma once

#include "TessikAutomation/Session/LocatorStore.h"

namespace tessik {

/// Where the transport goes when it is sent to the start or the end.
namespace LocateTarget {

/// The START locator, else zero at the timecode's rate, else at 30 fps.
TimecodePosition start(const LocatorStore& locators, const std::optional<TimecodePosition>& currentPosition);
/// The END locator, else the end of the selected pass, if any.
std::optional<TimecodePosition> songEnd(const LocatorStore& locators, const std::optional<TimecodePosition>& passEnd);
/// The end of a pass: its start plus the offset, in frames, of its last event, if it has one.
TimecodePosition passEnd(TimecodePosition start, std::optional<std::int64_t> lastOffset);

} // namespace LocateTarget
} // namespace tessik
