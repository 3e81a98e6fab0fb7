#pragma once

#include "TessikAutomation/Views/Controls/TravelControl.h"
#include "TessikAutomation/Views/Metrics.h"

#include <vector>

namespace tessik {

/// A short fader with a printed scale and a legend below. The centre of its cap follows the pointer.
class MiniFader final : public TravelControl {
public:
    struct Mark {
        QString label;
        double fraction; ///< of the travel, 0 at the bottom
    };

    MiniFader(QString legend, Travel way, std::vector<Mark> printed, const QColor& line)
        : TravelControl(std::move(legend), std::move(way)), marks(std::move(printed)), tint(line) {}

    std::vector<Mark> marks;
    QColor tint; ///< of the cap's index line
    int capHeight = Metrics::miniCapHeight;
    int trackWidth = 4;
    int scaleWidth = Metrics::miniFaderScaleWidth;

    void paintStatic(Canvas& canvas, const QRect& rect) const override;
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;
    QRect movingRect(const QRect& rect, const ControlValue& value) const override;
    QRect focusRect(const QRect& rect, const ControlValue& value) const override;

    double dragged(const QRect& rect, const Drag& drag) const override;

    QAccessible::Role role() const override { return QAccessible::Slider; }

private:
    QRect trackRect(const QRect& rect) const; ///< the cap's travel, including its height
    double centreY(const QRect& rect, double position) const;
    QRectF capRect(const QRect& rect, double value) const;
};

} // namespace tessik
