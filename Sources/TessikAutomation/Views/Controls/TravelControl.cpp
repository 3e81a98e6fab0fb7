#include "TessikAutomation/Views/Controls/TravelControl.h"

#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

namespace tessik {
namespace {

constexpr int valueWidth = 52; // for "+12.5 dB" and the like

} // namespace

QRect TravelControl::legendRect(const QRect& rect) {
    return {rect.x(), rect.bottom() + 1 - Metrics::knobLegendHeight, rect.width(), Metrics::knobLegendHeight};
}

QRect TravelControl::valueRect(const QRect& rect) {
    QRect display(0, 0, valueWidth, Metrics::knobLegendHeight + 3);
    display.moveCenter(legendRect(rect).center());
    return display;
}

void TravelControl::paintOverlay(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const QRect display = canvas.px(QRectF(valueRect(rect)));
    QPainter& painter = canvas.painter;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(withAlpha(canvas.look.tints.display, 0.55), canvas.line()));
    painter.setBrush(canvas.look.tints.displayBackground);
    painter.drawRoundedRect(QRectF(display).adjusted(0.5, 0.5, -0.5, -0.5), 3 * canvas.scale, 3 * canvas.scale);
    Type::draw(painter, display, Qt::AlignHCenter, Type::typeset(travel.text(state.value.number)),
               Type::font(9 * canvas.scale, QFont::DemiBold), canvas.look.tints.display);
}

void TravelControl::paintLegend(Canvas& canvas, const QRect& rect) const {
    Type::draw(canvas.painter, canvas.px(QRectF(rect)), Qt::AlignHCenter, title,
               Type::font(8 * canvas.scale, QFont::DemiBold, 0.2 * canvas.scale), canvas.look.tints.moduleLegend);
}

} // namespace tessik
