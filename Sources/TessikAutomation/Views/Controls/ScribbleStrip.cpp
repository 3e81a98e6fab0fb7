#include "TessikAutomation/Views/Controls/ScribbleStrip.h"

#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/Materials.h"

#include <QFontMetricsF>
#include <QLinearGradient>

namespace tessik {
namespace {

constexpr int narrowWidth = 40; // no room for letters and dots

} // namespace

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
    // Inset into the metal: dark above, light below.
    painter.fillRect(paper.adjusted(-line, -line, line, 0), withAlpha(Qt::black, 0.45));
    painter.fillRect(paper.adjusted(-line, 0, line, line), withAlpha(Qt::white, 0.5));
    QLinearGradient tape(paper.topLeft(), paper.bottomLeft());
    const QColor ground = labelled ? Materials::tape : Materials::bareTape;
    tape.setColorAt(0, blend(ground, Qt::black, state.hovered ? 0.02 : 0.09));
    tape.setColorAt(0.3, state.hovered ? blend(ground, Qt::white, 0.5) : ground);
    tape.setColorAt(1, ground);
    painter.fillRect(paper, tape);
    if (!labelled) return;
    const int stripe = canvas.px(3);
    const QColor colour = QColor::fromRgb(QRgb(state.value.number) | 0xFF000000);
    painter.fillRect(QRect(paper.x(), paper.bottom() - stripe + 1, paper.width(), stripe), colour);
    const bool isNarrow = rect.width() < narrowWidth;
    const QFont font = Type::font((isNarrow ? 9 : 11) * canvas.scale, QFont::DemiBold);
    const int margin = canvas.px(isNarrow ? 1 : 3);
    const QRect text = paper.adjusted(margin, 0, -margin, -stripe);
    const QFontMetricsF metrics(font);
    QString name = state.value.text;
    if (isNarrow) // as a hand does when it runs out of tape
        while (!name.isEmpty() && metrics.horizontalAdvance(name) > text.width())
            name.chop(1);
    else
        name = metrics.elidedText(name, Qt::ElideRight, text.width());
    Type::draw(painter, text, Qt::AlignHCenter, name, font, Materials::tapeInk);
}

std::optional<double> ScribbleStrip::keyed(int key, bool, double) const {
    return key == Qt::Key_Up ? std::optional(1.0) : std::nullopt;
}

QString ScribbleStrip::valueText(const ControlValue& value) const {
    return value.text.isEmpty() ? QStringLiteral("no name") : value.text;
}

} // namespace tessik
