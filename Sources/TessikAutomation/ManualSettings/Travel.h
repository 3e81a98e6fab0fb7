#pragma once

#include <QStringList>

#include <optional>

namespace tessik {

/// How a control's values are written and read.
struct ValueFormat {
    QString (*text)(double value);
    /// None if the text is not a value. The unit may be omitted.
    std::optional<double> (*parse)(const QString& text);

    static const ValueFormat decibels;  ///< "+3.0 dB"
    static const ValueFormat frequency; ///< "220 Hz", "2.20 kHz"
    static const ValueFormat level;     ///< "7.5", of a knob marked 0 to 10
    static const ValueFormat pan;       ///< "L 35", "C", "R 100"; from -1 to 1
};

/// The path of a knob or short fader from one end to the other: the values along it, in their unit, and how a hand
/// moves along it. A position is 0 at the lower end and 1 at the upper.
struct Travel {
    double min = 0;
    double max = 1;
    double defaultValue = 0; ///< within the ends
    const ValueFormat* format = &ValueFormat::level;
    bool logarithmic = false;
    bool hasCenterDetent = false;
    int steps = 50;        ///< presses of a key from end to end
    QStringList positions; ///< of a selector, whose values are 0 to one less than their number

    /// For a value beyond an end: that end.
    double position(double value) const;
    /// Clamped to the ends.
    double valueAt(double position) const;
    /// The same under a hand, which feels the detent and a selector's positions.
    double valueUnderHand(double position) const;

    std::optional<double> keyed(int key, bool fine, double value) const;
    double wheeled(double delta, double value) const;
    std::optional<double> typed(const QString& text) const;
    QString text(double value) const;
    /// Whether the text of a value begins with that letter, in either case.
    bool isTypedWith(QChar letter) const;
    /// The value change of one key press, or its mean if presses differ.
    double step() const { return (max - min) / steps; }
};

} // namespace tessik
