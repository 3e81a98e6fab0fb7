#include "TessikRig/TapeTimecode.h"

#include "TessikKit/Models/DropFrame.h"

#include <array>

namespace tessik::TapeTimecode {
namespace {

std::int64_t wrapped(std::int64_t frame, std::int64_t day) { return (frame % day + day) % day; }

} // namespace

std::int64_t framesPerDay(MTCFrameRate rate) {
    return rate == MTCFrameRate::fps30Drop ? 6 * 24 * DropFrame::framesPerTenMinutes
                                           : std::int64_t(24) * 3600 * framesPerSecond(rate);
}

TimecodePosition label(MTCFrameRate rate, std::int64_t tapeFrame) {
    const std::int64_t frame = wrapped(tapeFrame, framesPerDay(rate));
    return TimecodePosition::fromTotalFrames(rate,
                                             rate == MTCFrameRate::fps30Drop ? DropFrame::labelOfFrame(frame) : frame);
}

std::int64_t tapeFrame(MTCFrameRate rate, const TimecodePosition& label) {
    TimecodePosition position = label;
    position.frameRate = rate;
    const std::int64_t frame = position.totalFrames();
    return wrapped(rate == MTCFrameRate::fps30Drop ? DropFrame::frameOfLabel(frame) : frame, framesPerDay(rate));
}

std::uint8_t quarterFrameByte(const TimecodePosition& label, int piece) {
    const std::int64_t rateAndHours = label.hours | std::int64_t(label.frameRate) << 5;
    const std::array<std::int64_t, 4> fields{label.frames, label.seconds, label.minutes, rateAndHours};
    const std::int64_t field = fields[std::size_t(piece / 2)];
    return std::uint8_t(piece << 4 | (piece % 2 == 0 ? field & 0xF : field >> 4));
}

std::vector<std::uint8_t> fullFrameMessage(const TimecodePosition& label) {
    return {0x7F,
            0x7F,
            0x01,
            0x01,
            std::uint8_t(label.hours | std::int64_t(label.frameRate) << 5),
            std::uint8_t(label.minutes),
            std::uint8_t(label.seconds),
            std::uint8_t(label.frames)};
}

} // namespace tessik::TapeTimecode
