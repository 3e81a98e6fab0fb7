#pragma once

#include <QString>

#include <array>
#include <optional>

namespace tessik {

/// The console's fader law: from its 7-bit fader value to decibels.
namespace FaderDBCalibration {

struct Point {
    int rawValue;    ///< fader value, 1 to 127
    double decibels; ///< dB relative to unity
};

/// The measured law, ascending; linear between two points.
inline constexpr std::array<Point, 12> referencePoints{{{1, -60.0},
                                                        {5, -50.0},
                                                        {9, -40.0},
                                                        {25, -30.0},
                                                        {40, -25.0},
                                                        {49, -20.0},
                                                        {61, -15.0},
                                                        {77, -10.0},
                                                        {91, -5.0},
                                                        {106, 0.0},
                                                        {118, 5.0},
                                                        {127, 10.0}}};

/// Decibels of a fader value; none below 1 (fully off), +10 above 126.
std::optional<double> decibels(int rawValue);

/// The readout without a unit: "-∞", "+0.0", "-12.3".
QString displayString(int rawValue);

} // namespace FaderDBCalibration
} // namespace tessik
