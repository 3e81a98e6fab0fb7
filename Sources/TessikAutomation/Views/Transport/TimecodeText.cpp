#include "TessikAutomation/Views/Transport/TimecodeText.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QFontMetricsF>

namespace tessik {

QString TimecodeText::of(const std::optional<TimecodePosition>& position) {
    return position ? position->displayString() : QStringLiteral("--:--:--:--");
}

void TimecodeText::draw(Canvas& canvas, const QRect& rect, const QString& text, qreal pixels, const QColor& color) {
    const QFont font = Type::font(pixels * canvas.scale, QFont::Medium);
    const QFontMetricsF metrics(font);
    const int cell = qRound(metrics.horizontalAdvance(QLatin1Char('0')) + 0.05 * pixels * canvas.scale);
    const int separator = qRound(cell * 0.52);
    const int separators = int(text.count(QLatin1Char(':')));
    const int width = separators * separator + int(text.size() - separators) * cell;
    if (width > rect.width()) return draw(canvas, rect, text, pixels * rect.width() / (width + 1), color);

    QPainter& painter = canvas.painter;
    painter.setFont(font);
    painter.setPen(color);
    int x = rect.x() + (rect.width() - width) / 2;
    const int baseline = qRound(rect.y() + (rect.height() + metrics.capHeight()) / 2);
    // A colon stands on the line; between digits it belongs at half their height.
    const qreal raise = (metrics.capHeight() - metrics.xHeight()) / 2;
    for (const QChar character : text) {
        const bool isColon = character == QLatin1Char(':');
        const int step = isColon ? separator : cell;
        const qreal inset = (step - metrics.horizontalAdvance(character)) / 2;
        painter.drawText(QPointF(qRound(x + inset), isColon ? qRound(baseline - raise) : baseline), QString(character));
        x += step;
    }
}

} // namespace tessik
