#include "TessikAutomation/Views/Transport/TimecodeText.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QFontMetricsF>
#include <QRegularExpression>

#include <algorithm>

namespace tessik {

QString TimecodeText::of(const std::optional<TimecodePosition>& position) {
    return position ? position->displayString() : QStringLiteral("--:--:--:--");
}

TimecodeText::Typed TimecodeText::parse(const QString& text, MTCFrameRate rate) {
    static const QRegularExpression marks(QStringLiteral("[:;.,\\s]+"));
    static const QRegularExpression number(QStringLiteral("^[0-9]{1,2}$"));
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,8}$"));
    const QString typed = text.trimmed();
    QStringList parts = typed.split(marks);
    if (digits.match(typed).hasMatch()) {
        const QString whole = typed.rightJustified(8, QLatin1Char('0'));
        parts = {whole.mid(0, 2), whole.mid(2, 2), whole.mid(4, 2), whole.mid(6, 2)};
    }
    if (parts.size() == 3) parts << QStringLiteral("0");
    const auto isNumber = [](const QString& part) { return number.match(part).hasMatch(); };
    if (parts.size() != 4 || !std::all_of(parts.begin(), parts.end(), isNumber))
        return {{}, QStringLiteral("Type hours, minutes, seconds and frames: 01:02:03:04")};
    const TimecodePosition position{rate, parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), parts[3].toInt()};
    if (position.hours > 23) return {{}, QStringLiteral("Hours go from 0 to 23")};
    if (position.minutes > 59) return {{}, QStringLiteral("Minutes go from 0 to 59")};
    if (position.seconds > 59) return {{}, QStringLiteral("Seconds go from 0 to 59")};
    if (position.frames >= framesPerSecond(rate))
        return {{},
                QStringLiteral("Frames go from 0 to %1 at %2").arg(framesPerSecond(rate) - 1).arg(description(rate))};
    const bool isDropped =
        rate == MTCFrameRate::fps30Drop && position.minutes % 10 != 0 && position.seconds == 0 && position.frames < 2;
    if (isDropped) return {{}, QStringLiteral("This minute begins with frame 02 at %1").arg(description(rate))};
    return {position, {}};
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
    // A colon sits on the baseline; between digits it belongs at half their height.
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
