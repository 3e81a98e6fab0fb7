#pragma once

#include "TessikKit/Models/TimecodePosition.h"

#include <vector>

namespace tessik {

/// The timecode striped on a tape, and how a machine sends it. Tape frames count those elapsed since 00:00:00:00; at
/// 29.97 drop the labels run ahead of them by two each minute except every tenth. All of it wraps at 24 hours.
namespace TapeTimecode {

std::int64_t framesPerDay(MTCFrameRate rate);
TimecodePosition label(MTCFrameRate rate, std::int64_t tapeFrame);
/// The tape frame with that label at that rate; ignores the label's own rate.
std::int64_t tapeFrame(MTCFrameRate rate, const TimecodePosition& label);

/// Data byte of a quarter frame: `piece` 0 to 7 of a label whose hours fit five bits.
std::uint8_t quarterFrameByte(const TimecodePosition& label, int piece);
/// A full-frame message to all devices, without F0 and F7.
std::vector<std::uint8_t> fullFrameMessage(const TimecodePosition& label);

} // namespace TapeTimecode
} // namespace tessik
