#pragma once

#include "TessikAutomation/Views/Controls/TravelControl.h"
#include "TessikAutomation/Views/Metrics.h"

namespace tessik {

/// A knob with its legend below. Dragging up and down turns it, 150 pixels from end to end, however far the pointer
/// strays sideways. Angles are degrees clockwise from straight up.
class RotaryKnob final : public TravelControl {
public:
    RotaryKnob(QString legend, Travel way, const QColor& capTint)
        : TravelControl(std::move(legend), std::move(way)), tint(capTint) {}

    QColor tint;                          ///< of the cap
    int diameter = Metrics::knobDiameter; ///< at most; smaller where there is no room for it and its marks
    bool polarized = false;               ///< its middle is marked
    bool showsPositionScale = true;
    double minAngle = -135;
    double maxAngle = 135;
    int tickCount = 11;

    double angle(double value) const { return minAngle + travel.position(value) * (maxAngle - minAngle); }

    void paintStatic(Canvas& canvas, const QRect& rect) const override;
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;
    QRect movingRect(const QRect& rect, const ControlValue& value) const override;
    QRect focusRect(const QRect& rect, const ControlValue& value) const override;

    double dragged(const QRect& rect, const Drag& drag) const override;

    QAccessible::Role role() const override { return QAccessible::Dial; }

private:
    QRect knobRect(const QRect& rect) const;
    void paintPositions(Canvas& canvas, const QRect& rect) const;
};

} // namespace tessik
