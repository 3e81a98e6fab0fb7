#include "TessikKit/Models/FaderDBCalibration.h"

#include "TessikKit/Models/DecimalText.h"

namespace tessik::FaderDBCalibration {

std::optional<double> decibels(int rawValue) {
    if (rawValue < 1) return std::nullopt;
    if (rawValue > 126) return 10.0;
    std::size_t upper = 1;
    while (referencePoints[upper].rawValue < rawValue)
        ++upper;
    const Point& low = referencePoints[upper - 1];
    const Point& high = referencePoints[upper];
    return low.decibels + (high.decibels - low.decibels) * (rawValue - low.rawValue) / (high.rawValue - low.rawValue);
}

QString displayString(int rawValue) {
    const std::optional<double> value = decibels(rawValue);
    if (!value) return QStringLiteral("-∞");
    return (*value >= 0.0 ? QStringLiteral("+") : QString()) + decimalText(*value, 1);
}

} // namespace tessik::FaderDBCalibration
