#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QAccessible>

#include <optional>

namespace tessik {

/// What a control shows: a number in the control's own unit, or a text.
struct ControlValue {
    double number = 0;
    QString text;

    friend bool operator==(const ControlValue&, const ControlValue&) = default;
};

struct ControlState {
    ControlValue value;
    bool pressed = false;
    bool hovered = false;
    bool moving = false; ///< a hand is on it, or was a moment ago
};

/// How one control looks and reacts. Holds no value and knows no widget: one object serves every strip of a kind.
/// Rectangles are in logical pixels of the panel.
class ControlView {
public:
    virtual ~ControlView() = default;

    /// Draws what never changes into the layer shared by all panels of the kind.
    virtual void paintStatic(Canvas&, const QRect& /*rect*/) const {}
    /// Draws what depends on the state.
    virtual void paintMoving(Canvas&, const QRect& /*rect*/, const ControlState&) const {}
    /// Draws above all controls and the keyboard focus while a hand is on the control.
    virtual void paintOverlay(Canvas&, const QRect& /*rect*/, const ControlState&) const {}
    /// Everything that `paintMoving` and `paintOverlay` touch, including glow and shadow.
    virtual QRect movingRect(const QRect& rect, const ControlValue&) const { return rect; }
    /// Where the keyboard focus is shown.
    virtual QRect focusRect(const QRect& rect, const ControlValue&) const { return rect; }

    /// How pointer and keys operate a control whose value may be changed.
    enum class Operation : std::uint8_t { none, click, drag };
    virtual Operation operation() const { return Operation::none; }
    /// The number after a click.
    virtual double clicked(double number) const { return number; }
    struct Drag {
        QPointF from, to;
        double startNumber;
    };
    /// The number while the pointer drags.
    virtual double dragged(const QRect& /*rect*/, const Drag& drag) const { return drag.startNumber; }
    /// The number after a key press; none if the control does not use the key. It never uses Left, Right, Space and
    /// Return.
    virtual std::optional<double> keyed(int /*key*/, bool /*fine*/, double /*number*/) const { return std::nullopt; }
    /// The number after a turn of the wheel, 10 per notch; none if the control does not use the wheel.
    virtual std::optional<double> wheeled(double /*delta*/, double /*number*/) const { return std::nullopt; }
    /// Where a double click puts the control; none if it has no such place.
    virtual std::optional<double> defaultNumber() const { return std::nullopt; }
    /// The number that a text means; none if it means none, or nothing can be typed.
    virtual std::optional<double> typed(const QString& /*text*/) const { return std::nullopt; }
    virtual bool takesTyping() const { return false; }
    /// Whether a text that can be typed begins with that letter, as "L 35" does.
    virtual bool isTypedWith(QChar /*letter*/) const { return false; }

    virtual QAccessible::Role role() const = 0;
    /// The value as spoken: "-3.2 dB", "on".
    virtual QString valueText(const ControlValue& value) const = 0;
    struct Range {
        double min, max, step;
    };
    /// Of the number, for controls that can be operated.
    virtual Range range() const { return {0, 1, 1}; }
};

} // namespace tessik
