#include "TessikAutomation/Views/Controls/ScribbleStrip.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QFontMetricsF>
#include <QLinearGradient>

namespace tessik {

QColor ScribbleStrip::color(const QString& colorHex) {
    const QColor parsed(QLatin1Char('#') + colorHex);
    return colorHex.size() == 6 && parsed.isValid() ? parsed
                                                    : QColor(QLatin1Char('#') + QLatin1String(channelLabelPalette[0]));
}

ControlValue ScribbleStrip::value(const std::optional<ChannelLabel>& label) {
    if (!label) return {noLabel, {}};
    return {double(color(label->colorHex).rgb() & 0xFFFFFF), label->name};
}

void ScribbleStrip::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    QPainter& painter = canvas.painter;
    const QRect paper = canvas.px(QRectF(rect));
    const int line = canvas.line();
    const bool labelled = state.value.number != noLabel;
    // Let into the metal: dark above, light below.
    painter.fillRect(paper.adjusted(-line, -line, line, 0), withAlpha(Qt::black, 0.45));
    painter.fillRect(paper.adjusted(-line, 0, line, line), withAlpha(Qt::white, 0.5));
    QLinearGradient tape(paper.topLeft(), paper.bottomLeft());
    const QColor ground = labelled ? QColor(0xF3, 0xEE, 0xE0) : QColor(0xC9, 0xC7, 0xC1);
    tape.setColorAt(0, blend(ground, Qt::black, state.hovered ? 0.02 : 0.09));
    tape.setColorAt(0.3, state.hovered ? blend(ground, Qt::white, 0.5) : ground);
    tape.setColorAt(1, ground);
    painter.fillRect(paper, tape);
    if (!labelled) return;
    const int stripe = canvas.px(3);
    const QColor colour = QColor::fromRgb(QRgb(state.value.number) | 0xFF000000);
    painter.fillRect(QRect(paper.x(), paper.bottom() - stripe + 1, paper.width(), stripe), colour);
    const QFont font = Type::font(11 * canvas.scale, QFont::DemiBold);
    const QRect text = paper.adjusted(canvas.px(3), 0, -canvas.px(3), -stripe);
    const QString name = QFontMetricsF(font).elidedText(state.value.text, Qt::ElideRight, text.width());
    Type::draw(painter, text, Qt::AlignHCenter, name, font, QColor(0x1B, 0x1A, 0x18));
}

std::optional<double> ScribbleStrip::keyed(int key, bool, double) const {
    return key == Qt::Key_Up ? std::optional(1.0) : std::nullopt;
}

QString ScribbleStrip::valueText(const ControlValue& value) const {
    return value.text.isEmpty() ? QStringLiteral("no name") : value.text;
}

} // namespace tessik
