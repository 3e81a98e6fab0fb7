#include "TessikRig/TapeTimecode.h"

#include <algorithm>
#include <array>

namespace tessik::TapeTimecode {
namespace {

constexpr std::int64_t droppedFramesPerTenMinutes = 10 * 60 * 30 - 9 * 2;
constexpr std::int64_t droppedFramesPerMinute = 60 * 30 - 2;

std::int64_t wrapped(std::int64_t frame, std::int64_t day) { return (frame % day + day) % day; }

} // namespace

std::int64_t framesPerDay(MTCFrameRate rate) {
    return rate == MTCFrameRate::fps30Drop ? 6 * 24 * droppedFramesPerTenMinutes
                                           : std::int64_t(24) * 3600 * framesPerSecond(rate);
}

TimecodePosition label(MTCFrameRate rate, std::int64_t tapeFrame) {
    std::int64_t frame = wrapped(tapeFrame, framesPerDay(rate));
    if (rate == MTCFrameRate::fps30Drop) {
        const std::int64_t tens = frame / droppedFramesPerTenMinutes;
        const std::int64_t rest = frame % droppedFramesPerTenMinutes; // its first minute is a whole one
        frame += 2 * (9 * tens + std::max<std::int64_t>(0, (rest - 2) / droppedFramesPerMinute));
    }
    return TimecodePosition::fromTotalFrames(rate, frame);
}

std::int64_t tapeFrame(MTCFrameRate rate, const TimecodePosition& label) {
    TimecodePosition position = label;
    position.frameRate = rate;
    std::int64_t frame = position.totalFrames();
    if (rate == MTCFrameRate::fps30Drop) {
        const std::int64_t minutes = frame / (60 * 30);
        frame -= 2 * (minutes - minutes / 10);
    }
    return wrapped(frame, framesPerDay(rate));
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
