#include "TessikAutomation/Views/Controls/TravelControl.h"

#include "TessikAutomation/Views/Drawing/Type.h"

namespace tessik {

void TravelControl::paintValue(Canvas& canvas, const QRect& rect, double number) const {
    const QRect display = canvas.px(QRectF(rect));
    QPainter& painter = canvas.painter;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(withAlpha(canvas.look.tints.display, 0.55), canvas.line()));
    painter.setBrush(canvas.look.tints.displayBackground);
    painter.drawRoundedRect(QRectF(display).adjusted(0.5, 0.5, -0.5, -0.5), 3 * canvas.scale, 3 * canvas.scale);
    Type::draw(painter, display, Qt::AlignHCenter, Type::typeset(travel.text(number)),
               Type::font(9 * canvas.scale, QFont::DemiBold), canvas.look.tints.display);
}

void TravelControl::paintLegend(Canvas& canvas, const QRect& rect) const {
    Type::draw(canvas.painter, canvas.px(QRectF(rect)), Qt::AlignHCenter, title,
               Type::font(8 * canvas.scale, QFont::DemiBold, 0.2 * canvas.scale), canvas.look.tints.moduleLegend);
}

} // namespace tessik
