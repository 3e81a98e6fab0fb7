#pragma once

#include "TessikAutomation/ManualSettings/Travel.h"
#include "TessikAutomation/Views/Controls/ControlView.h"

namespace tessik {

/// What knobs and short faders have in common: travel between two ends, operated by keys, wheel and typing.
class TravelControl : public ControlView {
public:
    TravelControl(QString legend, Travel way) : title(std::move(legend)), travel(std::move(way)) {}

    QString title;
    Travel travel;

    Operation operation() const override { return Operation::drag; }
    std::optional<double> keyed(int key, bool fine, double number) const override {
        return travel.keyed(key, fine, number);
    }
    std::optional<double> wheeled(double delta, double number) const override { return travel.wheeled(delta, number); }
    std::optional<double> defaultNumber() const override { return travel.defaultValue; }
    bool takesTyping() const override { return true; }
    bool isTypedWith(QChar letter) const override { return travel.isTypedWith(letter); }
    std::optional<double> typed(const QString& text) const override { return travel.typed(text); }

    void paintOverlay(Canvas& canvas, const QRect& rect, const ControlState& state) const override;
    QString valueText(const ControlValue& value) const override { return travel.text(value.number); }
    Range range() const override { return {travel.min, travel.max, travel.step()}; }

protected:
    static QRect legendRect(const QRect& rect);
    /// Where the value appears, in a small display over the legend.
    static QRect valueRect(const QRect& rect);
    void paintLegend(Canvas& canvas, const QRect& rect) const;
};

} // namespace tessik
