#include "TessikKit/Models/TimecodePosition.h"

#include <algorithm>

namespace tessik {
namespace {

std::int64_t checkedAdd(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) qFatal("timecode overflow: %lld + %lld", qlonglong(a), qlonglong(b));
    return sum;
}

/// value × scale + next, for combining successive fields of a label.
std::int64_t checkedShift(std::int64_t value, std::int64_t scale, std::int64_t next) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(value, scale, &product))
        qFatal("timecode overflow: %lld * %lld", qlonglong(value), qlonglong(scale));
    return checkedAdd(product, next);
}

} // namespace

TimecodePosition TimecodePosition::fromTotalFrames(MTCFrameRate rate, std::int64_t totalFrames) {
    const std::int64_t count = std::max<std::int64_t>(totalFrames, 0);
    const std::int64_t wholeSeconds = count / framesPerSecond(rate);
    return {.frameRate = rate,
            .hours = wholeSeconds / 3600,
            .minutes = wholeSeconds / 60 % 60,
            .seconds = wholeSeconds % 60,
            .frames = count % framesPerSecond(rate)};
}

std::int64_t TimecodePosition::totalFrames() const {
    const std::int64_t wholeSeconds = checkedShift(checkedShift(hours, 60, minutes), 60, seconds);
    return checkedShift(wholeSeconds, framesPerSecond(frameRate), frames);
}

void TimecodePosition::addFrames(std::int64_t n) { *this = fromTotalFrames(frameRate, checkedAdd(totalFrames(), n)); }

TimecodePosition TimecodePosition::withinDay() const {
    TimecodePosition position = *this;
    position.hours = (hours % 24 + 24) % 24;
    return position;
}

TimecodePosition TimecodePosition::bounded() const {
    const auto held = [](std::int64_t field, std::int64_t mostFrames) {
        const std::int64_t most = farthest / 4 / mostFrames; // shared by four fields
        return std::clamp(field, -most, most);
    };
    return {frameRate, held(hours, 3600 * 30), held(minutes, 60 * 30), held(seconds, 30), held(frames, 1)};
}

QString TimecodePosition::displayString() const {
    return QString::asprintf("%02lld:%02lld:%02lld:%02lld", qlonglong(hours), qlonglong(minutes), qlonglong(seconds),
                             qlonglong(frames));
}

} // namespace tessik
