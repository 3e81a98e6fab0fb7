#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace tessik {

/// The rate of a timecode; the number is the two-bit code used in MIDI Time Code and in files.
enum class MTCFrameRate : std::uint8_t { fps24 = 0, fps25 = 1, fps30Drop = 2, fps30 = 3 };

/// None for any number other than 0 to 3.
constexpr std::optional<MTCFrameRate> mtcFrameRateFromRawValue(std::int64_t raw) {
    return raw >= 0 && raw <= 3 ? std::optional(MTCFrameRate(raw)) : std::nullopt;
}

/// Nominal whole frames a second, used for all arithmetic: 30 at 29.97 drop too.
constexpr int framesPerSecond(MTCFrameRate rate) {
    switch (rate) {
    case MTCFrameRate::fps24: return 24;
    case MTCFrameRate::fps25: return 25;
    case MTCFrameRate::fps30Drop:
    case MTCFrameRate::fps30: break;
    }
    return 30;
}

/// Real frames a second: 30/1.001 at 29.97 drop.
constexpr double realFramesPerSecond(MTCFrameRate rate) {
    return rate == MTCFrameRate::fps30Drop ? 30.0 / 1.001 : framesPerSecond(rate);
}

/// Labels of 24 hours, counted at the nominal rate.
constexpr std::int64_t labelsPerDay(MTCFrameRate rate) { return std::int64_t(24) * 3600 * framesPerSecond(rate); }

/// "25 fps", "29.97 fps (drop)".
QString description(MTCFrameRate rate);

} // namespace tessik
