#include "TessikAutomation/Views/Desk/HorizontalOnlyScrollView.h"

#include "TessikAutomation/Views/Metrics.h"

#include <QWheelEvent>

#include <cmath>

namespace tessik {

HorizontalOnlyScrollView::HorizontalOnlyScrollView(QWidget* parent)
    : QWidget(parent), _content(new QWidget(this)), _scrollBar(new QScrollBar(Qt::Horizontal, this)) {
    _content->setAttribute(Qt::WA_OpaquePaintEvent); // its children cover it, so that scrolling copies pixels
    _content->setAttribute(Qt::WA_NoSystemBackground);
    _scrollBar->setFocusPolicy(Qt::NoFocus);
    connect(_scrollBar, &QScrollBar::valueChanged, this, &HorizontalOnlyScrollView::moveContent);
    _animation.setDuration(200);
    _animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { _scrollBar->setValue(value.toInt()); });
}

void HorizontalOnlyScrollView::setContentWidth(int width, int step) {
    _contentWidth = width;
    _scrollBar->setSingleStep(step);
    layOut();
}

int HorizontalOnlyScrollView::destination() const {
    return _animation.state() == QVariantAnimation::Running ? _animation.endValue().toInt() : left();
}

void HorizontalOnlyScrollView::scrollTo(int x, bool animated) {
    _animation.stop();
    const int target = std::clamp(x, 0, maxLeft());
    if (!animated) {
        _scrollBar->setValue(target);
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

void HorizontalOnlyScrollView::resizeEvent(QResizeEvent*) { layOut(); }

void HorizontalOnlyScrollView::layOut() {
    _scrollBar->setRange(0, std::max(0, _contentWidth - width()));
    _scrollBar->setPageStep(width());
    _content->resize(std::max(_contentWidth, width()), height());
    moveContent();
}

void HorizontalOnlyScrollView::moveContent() {
    // On a screen of a fractional pixel ratio the content stands on the grid, else it would be drawn between pixels.
    const bool wholeRatio = devicePixelRatioF() == std::floor(devicePixelRatioF());
    _content->move(-(wholeRatio ? left() : Metrics::toGrid(left())), 0);
}

void HorizontalOnlyScrollView::wheelEvent(QWheelEvent* event) {
    // A touchpad counts pixels, a wheel eighths of a degree, 120 a notch: one step of the bar.
    const bool pixels = !event->pixelDelta().isNull();
    const QPoint delta = pixels ? event->pixelDelta() : event->angleDelta();
    const double along = delta.x() != 0 ? delta.x() : delta.y();
    if (along == 0) return;
    const double distance = (pixels ? along : along / 120 * _scrollBar->singleStep()) + _wheelRest;
    const int whole = int(distance);
    _wheelRest = distance - whole;
    scrollTo(left() - whole);
    event->accept();
}

} // namespace tessik
