#pragma once

#include "TessikAutomation/Views/Controls/ControlView.h"

namespace tessik {

/// Two arrows that show which way a hand must move the physical fader. Its number is a ChannelState::NullMatch, its
/// text the distance: "3.2 dB".
class NullIndicatorRow final : public ControlView {
public:
    void paintStatic(Canvas& canvas, const QRect& rect) const override;
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;

    QAccessible::Role role() const override { return QAccessible::StatusBar; }
    QString valueText(const ControlValue& value) const override;
};

/// The level in decibels on a small display. Its text is the readout without the unit.
class LevelReadout final : public ControlView {
public:
    void paintStatic(Canvas& canvas, const QRect& rect) const override;
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;

    QAccessible::Role role() const override { return QAccessible::StatusBar; }
    QString valueText(const ControlValue& value) const override { return value.text + QStringLiteral(" dB"); }
};

/// The channel's number, printed on the aluminium bar. A click selects the channel. Its number is 1 when selected.
class ChannelNumber final : public ControlView {
public:
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;

    QRect focusRect(const QRect& rect, const ControlValue&) const override { return rect.adjusted(4, 2, -4, -1); }

    Operation operation() const override { return Operation::click; }
    double clicked(double number) const override { return number == 0 ? 1 : 0; }
    std::optional<double> keyed(int key, bool fine, double number) const override;

    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QString valueText(const ControlValue& value) const override {
        return value.number != 0 ? QStringLiteral("selected") : QStringLiteral("not selected");
    }
};

} // namespace tessik
