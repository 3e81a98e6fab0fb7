#include "TessikAutomation/Views/Desk/NamePlate.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/Materials.h"

namespace tessik {
namespace {

constexpr QSize plateSize(268, 46);
constexpr int rim = 3;
constexpr int screw = 7;

void paintScrew(Canvas& canvas, QPointF centre, double slotAngle) {
    const qreal radius = screw / 2.0 * canvas.scale;
    QPainter& painter = canvas.painter;
    QLinearGradient head(centre - QPointF(radius, radius), centre + QPointF(radius, radius));
    head.setColorAt(0, Materials::screwLight);
    head.setColorAt(1, Materials::screwDark);
    painter.setPen(QPen(withAlpha(Qt::black, 0.6), 0.8 * canvas.scale));
    painter.setBrush(head);
    painter.drawEllipse(centre, radius, radius);
    painter.save();
    painter.translate(centre);
    painter.rotate(slotAngle);
    painter.setPen(QPen(Materials::screwSlot, 1.1 * canvas.scale, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(-0.7 * radius, 0), QPointF(0.7 * radius, 0));
    painter.restore();
}

} // namespace

void paintNamePlate(Canvas& canvas, const QRect& rect) {
    QRect plate(QPoint(), plateSize);
    plate.moveCenter(rect.center());
    Parts::recess(canvas.painter, canvas.px(QRectF(plate.adjusted(-rim, -rim, rim, rim))), canvas.scale,
                  Materials::plateBed, 4 * canvas.scale, canvas.look);
    const QRect metal = canvas.px(QRectF(plate));
    Parts::aluminium(canvas.painter, metal, canvas.scale, canvas.look);
    const int inset = plateSize.height() / 2;
    paintScrew(canvas, canvas.px(QPointF(plate.left() + inset, plate.center().y())), 28);
    paintScrew(canvas, canvas.px(QPointF(plate.right() - inset, plate.center().y())), -61);
    Parts::letterpress(canvas.painter, canvas.px(QRectF(plate.x(), plate.y() + 6, plate.width(), 22)), canvas.scale,
                       QStringLiteral("TESSIK"), Type::font(20 * canvas.scale, QFont::Bold, 7 * canvas.scale),
                       canvas.look);
    Parts::letterpress(canvas.painter, canvas.px(QRectF(plate.x(), plate.y() + 29, plate.width(), 10)), canvas.scale,
                       QStringLiteral("CONSOLE AUTOMATION"),
                       Type::font(8 * canvas.scale, QFont::DemiBold, 2.4 * canvas.scale), canvas.look);
}

} // namespace tessik
