#include "TessikAutomation/Views/Controls/PanelButton.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QKeyEvent>

namespace tessik {

PanelButton::PanelButton(const QString& legend, Symbol symbol, DrawingContext& drawing, QWidget* parent)
    : QAbstractButton(parent),
      _drawing(drawing),
      _symbol(std::move(symbol)),
      _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setText(legend);
    setFocusPolicy(Qt::TabFocus);
}

QSize PanelButton::sizeHint() const { return {widthOf(_legendVisible), 48}; }

void PanelButton::setLegendVisible(bool visible) {
    if (std::exchange(_legendVisible, visible) == visible) return;
    updateGeometry();
    update();
}

void PanelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    const QRect whole = canvas.px(QRectF(rect()));
    const QRect key = whole.adjusted(canvas.line(2), canvas.line(2), -canvas.line(2), -canvas.line(2));
    const QColor unlit = look.palette.switchOffFill;
    const QColor fill = isHot() ? blend(unlit, Qt::white, look.isDark() ? 0.06 : 0.25) : unlit;
    Parts::raisedPlate(painter, key, canvas.scale, fill, look.tints, isDown());
    const auto shade = [&](const QColor& color) { return isEnabled() ? color : blend(color, fill, 0.68); };
    const QColor tint = shade(_tint.isValid() ? _tint : look.tints.legend);
    const qreal side = canvas.px(text().isEmpty() ? 12 : 16);
    const qreal middle = isLegendVisible() ? key.height() * 0.38 : key.height() / 2.0;
    const QPointF corner(key.x() + (key.width() - side) / 2, key.y() + middle - side / 2);
    _symbol(painter, QRectF(corner, QSizeF(side, side)), tint);
    if (isLegendVisible()) {
        const QRect legend(key.x(), key.bottom() - canvas.px(15), key.width(), canvas.px(12));
        Type::draw(painter, legend, Qt::AlignHCenter, text(),
                   Type::font(8 * canvas.scale, QFont::DemiBold, 0.5 * canvas.scale), shade(look.tints.legend));
    }
    drawFocus(canvas, whole);
}

void PanelButton::drawFocus(Canvas& canvas, const QRect& rect) const {
    if (!hasFocus()) return;
    canvas.painter.setPen(QPen(canvas.look.tints.focusRing, canvas.line(2)));
    canvas.painter.setBrush(Qt::NoBrush);
    canvas.painter.drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), 4 * canvas.scale, 4 * canvas.scale);
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
