#pragma once

#include "TessikAutomation/ManualSettings/ChannelLabel.h"
#include "TessikAutomation/Views/Controls/ControlView.h"

namespace tessik {

/// The strip of paper on the bar with a channel's name and, below it, its colour. Its text is the name; its number the
/// colour as RGB, or `noLabel`. A click asks to edit it.
class ScribbleStrip final : public ControlView {
public:
    static constexpr double noLabel = -1;
    /// The colour of a label; neutral grey if the text is not a colour.
    static QColor color(const QString& colorHex);
    static ControlValue value(const std::optional<ChannelLabel>& label);

    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override;
    QRect movingRect(const QRect& rect, const ControlValue&) const override { return rect.adjusted(-1, -1, 1, 2); }
    QRect focusRect(const QRect& rect, const ControlValue&) const override { return rect.adjusted(-1, -1, 1, 1); }

    Operation operation() const override { return Operation::click; }
    double clicked(double) const override { return 1; }
    std::optional<double> keyed(int key, bool fine, double number) const override;

    QAccessible::Role role() const override { return QAccessible::PushButton; }
    QString valueText(const ControlValue& value) const override;
};

} // namespace tessik
