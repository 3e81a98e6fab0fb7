#include "TessikAutomation/Views/Controls/PanelButton.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QKeyEvent>

namespace tessik {

PanelButton::PanelButton(const QString& legend, Symbol symbol, DrawingContext& drawing, QWidget* parent)
    : QAbstractButton(parent),
      _symbol(std::move(symbol)),
      _drawing(drawing),
      _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setText(legend);
    setFocusPolicy(Qt::TabFocus);
}

QSize PanelButton::sizeHint() const { return {60, 48}; }

void PanelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    const QRect whole = canvas.px(QRectF(rect()));
    const QRect key = whole.adjusted(canvas.line(2), canvas.line(2), -canvas.line(2), -canvas.line(2));
    const QColor fill = underMouse() ? blend(look.palette.switchOffFill, Qt::white, look.isDark() ? 0.06 : 0.25)
                                     : look.palette.switchOffFill;
    Parts::raisedPlate(painter, key, canvas.scale, fill, look.tints, isDown());
    const qreal side = canvas.px(16);
    const QPointF centre(key.center().x() + 0.5, key.y() + key.height() * 0.38);
    _symbol(painter, QRectF(centre - QPointF(side, side) / 2, QSizeF(side, side)), look.tints.legend);
    const QRect legend(key.x(), key.bottom() - canvas.px(15), key.width(), canvas.px(12));
    Type::draw(painter, legend, Qt::AlignHCenter, text(),
               Type::font(8 * canvas.scale, QFont::DemiBold, 0.5 * canvas.scale), look.tints.legend);
    if (!hasFocus()) return;
    painter.setPen(QPen(look.tints.focusRing, canvas.line(2)));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(whole).adjusted(1, 1, -1, -1), 4 * canvas.scale, 4 * canvas.scale);
}

void PanelButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up)
        click();
    else
        event->ignore();
}

void PanelButton::enterEvent(QEnterEvent*) { update(); }
void PanelButton::leaveEvent(QEvent*) { update(); }

} // namespace tessik
