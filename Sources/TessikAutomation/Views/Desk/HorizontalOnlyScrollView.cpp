#include "TessikAutomation/Views/Desk/HorizontalOnlyScrollView.h"

#include <QWheelEvent>

namespace tessik {

HorizontalOnlyScrollView::HorizontalOnlyScrollView(QWidget* parent) : OneAxisScrollView(Qt::Horizontal, parent) {
    _animation.setDuration(200);
    _animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { scrollBar()->setValue(value.toInt()); });
}

int HorizontalOnlyScrollView::destination() const {
    return _animation.state() == QVariantAnimation::Running ? _animation.endValue().toInt() : left();
}

void HorizontalOnlyScrollView::scrollTo(int x, bool animated) {
    _animation.stop();
    const int target = std::clamp(x, 0, maxLeft());
    if (!animated) {
        scrollBar()->setValue(target);
        return;
    }
    _animation.setStartValue(left());
    _animation.setEndValue(target);
    _animation.start();
}

void HorizontalOnlyScrollView::reveal(int x, int itsWidth, bool animated) {
    if (x < left())
        scrollTo(x, animated);
    else if (x + itsWidth > left() + width())
        scrollTo(x + itsWidth - width(), animated);
}

void HorizontalOnlyScrollView::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->pixelDelta().isNull() ? event->angleDelta() : event->pixelDelta();
    if (delta.isNull()) return;
    scrollTo(left() - wheelDistance(*event, delta.x() != 0 ? Qt::Horizontal : Qt::Vertical));
    event->accept();
}

} // namespace tessik
