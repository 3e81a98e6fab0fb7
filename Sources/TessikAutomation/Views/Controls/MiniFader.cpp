#include "TessikAutomation/Views/Controls/MiniFader.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/Materials.h"

#include <QLinearGradient>

namespace tessik {
namespace {

constexpr int capWidth = 20;
constexpr int shadow = 5;
constexpr char capSprite = 0; // its address identifies the caps, which short faders share

void paintCap(QPainter& painter, const QRect& cap, qreal u, const QColor& line) {
    const int hair = std::max(1, qRound(u));
    Parts::dropShadow(painter, QRectF(cap).adjusted(0, 2 * u, u, 2 * u), 2 * u, 4 * u, 0.6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Materials::black);
    painter.drawRoundedRect(QRectF(cap), 2 * u, 2 * u);
    const QRect body = cap.adjusted(hair, hair, -hair, -hair);
    QLinearGradient face(body.topLeft(), body.bottomLeft());
    face.setColorAt(0, Materials::shortCapEdge);
    face.setColorAt(0.42, Materials::shortCapHollow);
    face.setColorAt(0.58, Materials::shortCapRidge);
    face.setColorAt(1, Materials::shortCapFoot);
    painter.fillRect(body, face);
    painter.fillRect(QRect(body.x(), body.y(), body.width(), hair), withAlpha(Qt::white, 0.353));
    const int y = cap.y() + (cap.height() - hair) / 2;
    painter.fillRect(QRect(body.x(), y - hair, body.width(), 3 * hair), Materials::black);
    painter.fillRect(QRect(body.x(), y, body.width(), hair), line);
}

} // namespace

QRect MiniFader::trackRect(const QRect& rect) const {
    const int width = scaleWidth + capWidth;
    const int x = rect.x() + (rect.width() - width) / 2 + scaleWidth;
    return {x, rect.y() + 2, capWidth, rect.height() - Metrics::knobLegendHeight - 4};
}

double MiniFader::centreY(const QRect& rect, double position) const {
    const QRect track = trackRect(rect);
    return track.y() + track.height() - capHeight / 2.0 - (track.height() - capHeight) * position;
}

QRectF MiniFader::capRect(const QRect& rect, double value) const {
    const double centre = centreY(rect, travel.position(value));
    return {double(trackRect(rect).x()), centre - capHeight / 2.0, double(capWidth), double(capHeight)};
}

void MiniFader::paintStatic(Canvas& canvas, const QRect& rect) const {
    const QRect track = trackRect(rect);
    const QFont font = Type::font(8 * canvas.scale, QFont::Medium);
    for (const Mark& mark : marks) {
        const double y = centreY(rect, mark.fraction);
        const int top = canvas.px(y) - canvas.line() / 2;
        canvas.painter.fillRect(QRect(canvas.px(track.x() - 1), top, canvas.px(5), canvas.line()),
                                canvas.look.palette.tickColor);
        Type::draw(canvas.painter, canvas.px(QRectF(rect.x() - 4, y - 5, track.x() - 4 - rect.x() + 4, 10)),
                   Qt::AlignRight, mark.label, font, canvas.look.tints.moduleLegend);
    }
    const QRectF groove(track.x() + (capWidth - trackWidth) / 2.0, track.y() + 2, trackWidth, track.height() - 4);
    Parts::recess(canvas.painter, canvas.px(groove), canvas.scale, canvas.look.tints.slotFloor,
                  trackWidth / 2.0 * canvas.scale, canvas.look);
    paintLegend(canvas, legendRect(rect));
}

void MiniFader::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const QRectF cap = capRect(rect, state.value.number);
    const QSize size = canvas.px(QRectF(0, 0, capWidth, capHeight)).size();
    const int reach = canvas.px(shadow);
    const QPoint at(canvas.px(cap.x()), canvas.px(cap.y()));
    canvas.sprite(&capSprite, tint.rgb(), at - QPoint(reach, reach), size + 2 * QSize(reach, reach),
                  [&](QPainter& painter) { paintCap(painter, QRect(QPoint(reach, reach), size), canvas.scale, tint); });
}

QRect MiniFader::movingRect(const QRect& rect, const ControlValue&) const {
    return rect.adjusted(-2, -4, 2, 2).united(valueRect(rect));
}

QRect MiniFader::focusRect(const QRect& rect, const ControlValue& value) const {
    return capRect(rect, value.number).toAlignedRect().adjusted(-3, -3, 3, 3);
}

double MiniFader::dragged(const QRect& rect, const Drag& drag) const {
    const QRect track = trackRect(rect);
    const int way = track.height() - capHeight;
    if (way <= 0) return drag.startNumber;
    return travel.valueUnderHand(1 - (drag.to.y() - track.y() - capHeight / 2.0) / way);
}

} // namespace tessik
