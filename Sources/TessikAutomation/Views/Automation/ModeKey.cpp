#include "TessikAutomation/Views/Automation/ModeKey.h"

namespace tessik {

ModeKey::ModeKey(const QString& legend, QColor Tints::*color, DrawingContext& drawing, QWidget* parent)
    : PanelButton(legend, nullptr, drawing, parent), _key(legend, color, true) {
    setObjectName(legend);
    setCheckable(true);
}

void ModeKey::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect key = rect().adjusted(1, 1, -1, -1);
    if (!isEnabled()) painter.setOpacity(0.45);
    _key.paintStatic(canvas, key);
    _key.paintMoving(
        canvas, key,
        {.value = {.number = isChecked() ? 1.0 : 0.0, .text = {}}, .pressed = isDown(), .hovered = isHot()});
    painter.setOpacity(1);
    drawFocus(canvas, canvas.px(QRectF(rect())));
}

} // namespace tessik
