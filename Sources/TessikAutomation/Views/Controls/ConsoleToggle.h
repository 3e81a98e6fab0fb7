#pragma once

#include "TessikAutomation/Views/Controls/ControlView.h"

namespace tessik {

/// A two-state switch of the console: a key with a lamp, or one that lights up entirely. Its number is 0 or 1.
class ConsoleToggle final : public ControlView {
public:
    /// `shortLabel` is for keys too small for the other.
    ConsoleToggle(QString label, QColor Tints::*color, bool showsLED, QString shortLabel = {})
        : _label(std::move(label)), _shortLabel(std::move(shortLabel)), _color(color), _showsLED(showsLED) {}

    void paintStatic(Canvas& canvas, const QRect& rect) const override;
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;
    QRect movingRect(const QRect& rect, const ControlValue& value) const override;

    Operation operation() const override { return Operation::click; }
    double clicked(double number) const override { return number == 0 ? 1 : 0; }
    std::optional<double> keyed(int key, bool fine, double number) const override;

    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QString valueText(const ControlValue& value) const override;

private:
    void paintKey(Canvas& canvas, QPainter& painter, const QRect& key, bool on, bool pressed, bool hovered) const;

    QString _label;
    QString _shortLabel;
    QColor Tints::*_color;
    bool _showsLED;
};

} // namespace tessik
