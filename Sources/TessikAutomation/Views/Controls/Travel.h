#pragma once

#include <QStringList>

#include <optional>

namespace tessik {

/// How the values of a control are written and read.
struct ValueFormat {
    QString (*text)(double value);
    /// None for a text that is no value. The unit may be left out.
    std::optional<double> (*parse)(const QString& text);

    static const ValueFormat decibels;  ///< "+3.0 dB"
    static const ValueFormat frequency; ///< "220 Hz", "2.20 kHz"
    static const ValueFormat level;     ///< "7.5", of a knob marked 0 to 10
    static const ValueFormat pan;       ///< "L 35", "C", "R 100"; from -1 to 1
};

/// The way of a knob or a short fader from its one end to the other: the values on it, in their unit, and how a hand
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

    /// Of a value beyond an end: that end.
    double position(double value) const;
    /// Held to the ends.
    double valueAt(double position) const;
    /// The same under a hand, which feels the detent and the positions of a selector.
    double valueUnderHand(double position) const;

    std::optional<double> keyed(int key, bool fine, double value) const;
    double wheeled(double delta, double value) const;
    std::optional<double> typed(const QString& text) const;
    QString text(double value) const;
    /// The value change of one key press, or its mean where presses differ.
    double step() const { return (max - min) / steps; }
};

} // namespace tessik
