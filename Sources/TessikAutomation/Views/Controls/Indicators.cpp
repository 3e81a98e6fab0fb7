#include "TessikAutomation/Views/Controls/Indicators.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/Materials.h"
#include "TessikKit/Models/ChannelState.h"

#include <QPainterPath>

namespace tessik {
namespace {

using NullMatch = ChannelState::NullMatch;

struct ArrowColors {
    QColor up, down;
};

/// Yellow shows where to go, green that it is there.
ArrowColors arrowColors(NullMatch match, const Tints& tints) {
    switch (match) {
    case NullMatch::none: return {tints.unlitArrow, tints.unlitArrow};
    case NullMatch::needsUp: return {tints.ledYellow, tints.unlitArrow};
    case NullMatch::needsDown: return {tints.unlitArrow, tints.ledYellow};
    case NullMatch::matched: break;
    }
    return {tints.ledGreen, tints.ledGreen};
}

void paintArrow(QPainter& painter, const QRect& window, qreal u, bool up, const QColor& color, bool lit) {
    const qreal width = 9 * u;
    const qreal height = 6.5 * u;
    const QPointF centre = QRectF(window).center();
    const qreal tip = up ? -height / 2 : height / 2;
    QPainterPath arrow(centre + QPointF(0, tip));
    arrow.lineTo(centre + QPointF(width / 2, -tip));
    arrow.lineTo(centre + QPointF(-width / 2, -tip));
    arrow.closeSubpath();
    if (lit)
        Parts::glow(painter, QRectF(centre, QSizeF()).adjusted(-2 * u, -1.5 * u, 2 * u, 1.5 * u), 7 * u, color, 0.4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPath(arrow);
}

/// How a readout is typeset: digits in cells; in a narrow one smaller and without the unit. In logical pixels.
struct ReadoutType {
    int cell, point, infinity, right;
    qreal size;
    bool hasUnit;
};
ReadoutType readoutType(const QRect& rect) {
    return rect.width() < 40 ? ReadoutType{6, 3, 10, 2, 9, false} : ReadoutType{7, 4, 10, 21, 11, true};
}

} // namespace

void NullIndicatorRow::paintStatic(Canvas& canvas, const QRect& rect) const {
    const QRect row = canvas.px(QRectF(rect));
    Parts::recess(canvas.painter, row, canvas.scale, canvas.look.tints.arrowWindow, 3 * canvas.scale, canvas.look);
    const int seam = row.x() + row.width() / 2;
    canvas.painter.fillRect(QRect(seam, row.y() + canvas.line(3), canvas.line(), row.height() - 2 * canvas.line(3)),
                            withAlpha(Qt::black, 0.35));
    const QRect left(row.topLeft(), QSize(row.width() / 2, row.height()));
    paintArrow(canvas.painter, left, canvas.scale, true, canvas.look.tints.unlitArrow, false);
    paintArrow(canvas.painter, left.translated(row.width() - left.width(), 0), canvas.scale, false,
               canvas.look.tints.unlitArrow, false);
}

void NullIndicatorRow::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const auto match = NullMatch(int(state.value.number));
    if (match == NullMatch::none) return;
    const QRect row = canvas.px(QRectF(rect));
    canvas.sprite(this, std::uint32_t(match), row.topLeft(), row.size(), [&](QPainter& painter) {
        const ArrowColors colors = arrowColors(match, canvas.look.tints);
        const QRect left(QPoint(0, 0), QSize(row.width() / 2, row.height()));
        const auto half = [&](const QRect& window, bool up, const QColor& color) {
            if (color != canvas.look.tints.unlitArrow) paintArrow(painter, window, canvas.scale, up, color, true);
        };
        painter.setClipRect(QRect(QPoint(0, 0), row.size()).adjusted(1, 1, -1, -1));
        half(left, true, colors.up);
        half(left.translated(row.width() - left.width(), 0), false, colors.down);
    });
}

QString NullIndicatorRow::valueText(const ControlValue& value) const {
    switch (NullMatch(int(value.number))) {
    case NullMatch::none: return QStringLiteral("no target");
    case NullMatch::needsUp: return QStringLiteral("up, ") + value.text;
    case NullMatch::needsDown: return QStringLiteral("down, ") + value.text;
    case NullMatch::matched: break;
    }
    return QStringLiteral("matched");
}

void LevelReadout::paintStatic(Canvas& canvas, const QRect& rect) const {
    const QRect display = canvas.px(QRectF(rect));
    const Tints& tints = canvas.look.tints;
    Parts::recess(canvas.painter, display, canvas.scale, tints.displayBackground, 3 * canvas.scale, canvas.look);
    if (readoutType(rect).hasUnit)
        Type::draw(canvas.painter, display.adjusted(0, 0, -canvas.px(6), 0), Qt::AlignRight, QStringLiteral("dB"),
                   Type::font(8 * canvas.scale, QFont::DemiBold), tints.displayDim);
}

void LevelReadout::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    // Digits stand in cells of the same width, so that they do not dance while a fader moves.
    const QRect display = canvas.px(QRectF(rect));
    const ReadoutType type = readoutType(rect);
    const int cell = canvas.px(type.cell);
    const QString text = Type::typeset(state.value.text);
    int x = display.right() - canvas.px(type.right);
    for (qsizetype i = text.size(); i-- > 0;) {
        const QChar glyph = text[i];
        const int width = glyph == QLatin1Char('.') ? canvas.px(type.point)
                          : glyph == QChar(0x221E)  ? canvas.px(type.infinity)
                                                    : cell;
        x -= width;
        canvas.sprite(this, glyph.unicode(), QPoint(x, display.y()), QSize(width, display.height()),
                      [&](QPainter& painter) {
                          Type::draw(painter, QRect(0, 0, width, display.height()), Qt::AlignHCenter, QString(glyph),
                                     Type::font(type.size * canvas.scale, QFont::DemiBold), canvas.look.tints.display);
                      });
    }
}

void ChannelNumber::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const QRect place = canvas.px(QRectF(rect));
    if (state.value.number != 0) {
        canvas.painter.setRenderHint(QPainter::Antialiasing);
        canvas.painter.setPen(Qt::NoPen);
        canvas.painter.setBrush(Materials::chosenNumber);
        const QRect plate = canvas.px(QRectF(rect.adjusted(6, 3, -6, -2)));
        canvas.painter.drawRoundedRect(QRectF(plate), 3 * canvas.scale, 3 * canvas.scale);
        Type::draw(canvas.painter, place, Qt::AlignHCenter, state.value.text,
                   Type::font(14 * canvas.scale, QFont::DemiBold), Qt::white);
        return;
    }
    Parts::letterpress(canvas.painter, place, canvas.scale, state.value.text,
                       Type::font(14 * canvas.scale, QFont::DemiBold), canvas.look);
}

std::optional<double> ChannelNumber::keyed(int key, bool, double number) const {
    const double wanted = key == Qt::Key_Up ? 1 : 0;
    return (key == Qt::Key_Up || key == Qt::Key_Down) && wanted != number ? std::optional(wanted) : std::nullopt;
}

} // namespace tessik
