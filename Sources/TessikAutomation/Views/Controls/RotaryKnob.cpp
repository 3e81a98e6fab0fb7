#include "TessikAutomation/Views/Controls/RotaryKnob.h"

#include "TessikAutomation/Views/Drawing/Knob.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <cmath>

namespace tessik {
namespace {

constexpr double dragTravel = 150;
constexpr double pointerStep = 1.5; // degrees between two images of the pointer
constexpr int positionsRoom = 24;   // for the names of a selector's positions
// Their addresses identify images shared by knobs of the same size.
constexpr char pointerSprite = 0;
constexpr char hoverSprite = 0;

} // namespace

QRect RotaryKnob::knobRect(const QRect& rect) const {
    const int marks = travel.positions.isEmpty() ? Parts::tickRoom : positionsRoom;
    const int room = std::min(rect.height() - Metrics::knobLegendHeight - marks, rect.width() - 2 * marks);
    const int side = std::clamp(room, std::min(Metrics::knobDiameter, diameter), diameter);
    const int above = rect.height() - Metrics::knobLegendHeight - side;
    return {rect.x() + (rect.width() - side) / 2, rect.y() + std::max(0, (above + Parts::tickRoom) / 2), side, side};
}

void RotaryKnob::paintStatic(Canvas& canvas, const QRect& rect) const {
    const QRectF knob = canvas.px(QRectF(knobRect(rect)));
    const qreal radius = knob.width() / 2;
    const QPointF centre = QRectF(knob).center();
    if (!travel.positions.isEmpty())
        paintPositions(canvas, rect);
    else if (showsPositionScale)
        Parts::knobTicks(canvas.painter, centre, radius, canvas.scale, minAngle, maxAngle, tickCount, polarized,
                         canvas.look);
    Parts::knobBody(canvas.painter, centre, radius, canvas.scale, tint, canvas.look);
    paintLegend(canvas, legendRect(rect));
}

void RotaryKnob::paintPositions(Canvas& canvas, const QRect& rect) const {
    const QRect knob = canvas.px(QRectF(knobRect(rect)));
    const int count = int(travel.positions.size());
    Parts::knobTicks(canvas.painter, QRectF(knob).center(), knob.width() / 2.0, canvas.scale, minAngle, maxAngle, count,
                     false, canvas.look);
    const QFont font = Type::font(8 * canvas.scale, QFont::DemiBold);
    for (int i = 0; i < count; ++i) {
        const double radians = angle(i) * M_PI / 180;
        const double away = knob.width() / 2.0 + 11.5 * canvas.scale;
        QRect box(0, 0, canvas.px(26), canvas.px(10));
        const QPointF centre =
            QRectF(knob).center() + QPointF(std::sin(radians) * away * 1.15, -std::cos(radians) * away);
        box.moveCenter(centre.toPoint());
        Type::draw(canvas.painter, box, Qt::AlignHCenter, travel.positions[i], font, canvas.look.tints.moduleLegend);
    }
}

void RotaryKnob::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const QRect knob = canvas.px(QRectF(knobRect(rect)));
    const QRectF own(QPointF(), QSizeF(knob.size()));
    if (state.hovered || state.pressed)
        canvas.sprite(&hoverSprite, state.pressed, knob.topLeft(), knob.size(), [&](QPainter& painter) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(withAlpha(Qt::white, state.pressed ? 0.2 : 0.12));
            painter.drawEllipse(own.center(), own.width() * 0.37, own.height() * 0.37);
        });
    const int step = qRound(angle(state.value.number) / pointerStep);
    const bool dark = Parts::isPale(tint);
    canvas.sprite(&pointerSprite, std::uint32_t(step + 360) << 1 | (dark ? 1u : 0u), knob.topLeft(), knob.size(),
                  [&](QPainter& painter) {
                      Parts::knobPointer(painter, own.center(), own.width() / 2, canvas.scale, step * pointerStep,
                                         dark);
                  });
}

QRect RotaryKnob::movingRect(const QRect& rect, const ControlValue&) const { return rect.united(valueRect(rect)); }

QRect RotaryKnob::focusRect(const QRect& rect, const ControlValue&) const {
    return knobRect(rect).adjusted(-4, -4, 4, 4);
}

double RotaryKnob::dragged(const QRect&, const Drag& drag) const {
    return travel.valueUnderHand(travel.position(drag.startNumber) + (drag.from.y() - drag.to.y()) / dragTravel);
}

} // namespace tessik
