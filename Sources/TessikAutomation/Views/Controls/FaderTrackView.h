#pragma once

#include "TessikAutomation/Views/Controls/ControlView.h"
#include "TessikAutomation/Views/Metrics.h"

namespace tessik {

/// A vertical fader: groove, dB scale and cap. Its number is the fader value 0 to 127, written unrounded while the
/// pointer drags. The cap's centre follows the pointer, wherever the drag began.
class FaderTrackView final : public ControlView {
public:
    struct Mark {
        QString label;
        double fraction; ///< of the travel, 0 at the bottom
    };
    /// The marks of the console's fader law, and "-∞" at the bottom.
    static const std::vector<Mark>& scale();
    /// Decibels as printed on the scale: "+10", "+0", "-5".
    static QString scaleLabel(double decibels);

    QColor Tints::*accentTint = &Tints::capLine; ///< of the cap's index line
    int capHeight = Metrics::capHeight;
    int grooveWidth = Metrics::grooveWidth;
    int scaleWidth = Metrics::faderScaleWidth; ///< labels and long ticks; a tick is 0.4 of it
    std::vector<Mark> tickFractions = scale();

    /// The height of the cap's centre at a fraction of the travel.
    double centreY(const QRect& rect, double normalizedValue) const;
    /// The fader value, 0 to 127, whose cap centre is at `y`.
    double valueAt(const QRect& rect, double y) const;
    QRect capRect(const QRect& rect, double value) const;

    void paintStatic(Canvas& canvas, const QRect& rect) const override;
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;
    QRect movingRect(const QRect& rect, const ControlValue& value) const override;
    QRect focusRect(const QRect& rect, const ControlValue& value) const override;

    Operation operation() const override { return Operation::drag; }
    double dragged(const QRect& rect, const Drag& drag) const override;
    std::optional<double> keyed(int key, bool fine, double number) const override;

    QAccessible::Role role() const override { return QAccessible::Slider; }
    QString valueText(const ControlValue& value) const override;
    Range range() const override { return {0, 127, 1}; }

private:
    int tickWidth() const { return qRound(scaleWidth * 0.4); }
    int contentWidth() const;
    /// No room for cap and labels side by side: the cap stands in the middle, between short ticks.
    bool isNarrow(const QRect& rect) const;
    int tickLength(const QRect& rect) const;
    /// For the mark at that height; empty if there is no room.
    QRect labelRect(const QRect& rect, double y) const;
    int grooveX(const QRect& rect) const;
    void paintScale(Canvas& canvas, const QRect& rect) const;
};

} // namespace tessik
