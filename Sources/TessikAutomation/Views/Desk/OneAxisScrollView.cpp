#include "TessikAutomation/Views/Desk/OneAxisScrollView.h"

#include "TessikAutomation/Views/Metrics.h"

#include <QWheelEvent>

#include <cmath>

namespace tessik {

OneAxisScrollView::OneAxisScrollView(Qt::Orientation axis, QWidget* parent)
    : QWidget(parent), _axis(axis), _content(new QWidget(this)), _scrollBar(new QScrollBar(axis, this)) {
    _content->setAttribute(Qt::WA_OpaquePaintEvent); // covered by its children, so that scrolling copies pixels
    _content->setAttribute(Qt::WA_NoSystemBackground);
    _scrollBar->setFocusPolicy(Qt::NoFocus);
    connect(_scrollBar, &QScrollBar::valueChanged, this, &OneAxisScrollView::moveContent);
}

void OneAxisScrollView::setContentLength(int length, int step) {
    _contentLength = length;
    _scrollBar->setSingleStep(step);
    layOut();
}

void OneAxisScrollView::resizeEvent(QResizeEvent*) { layOut(); }

void OneAxisScrollView::layOut() {
    const bool isSideways = _axis == Qt::Horizontal;
    const int room = isSideways ? width() : height();
    const int length = std::max(_contentLength, room);
    _scrollBar->setRange(0, length - room);
    _scrollBar->setPageStep(room);
    _content->resize(isSideways ? QSize(length, height()) : QSize(width(), length));
    moveContent();
}

void OneAxisScrollView::moveContent() {
    // On a screen with a fractional pixel ratio the content stays on the grid, or it would be drawn between pixels.
    const bool isWholeRatio = devicePixelRatioF() == std::floor(devicePixelRatioF());
    const int at = isWholeRatio ? _scrollBar->value() : Metrics::toGrid(_scrollBar->value());
    _content->move(_axis == Qt::Horizontal ? QPoint(-at, 0) : QPoint(0, -at));
}

int OneAxisScrollView::wheelDistance(const QWheelEvent& event, Qt::Orientation turned) {
    // A touchpad counts pixels; a wheel counts eighths of a degree, 120 a notch: one step of the bar.
    const bool isInPixels = !event.pixelDelta().isNull();
    const QPoint delta = isInPixels ? event.pixelDelta() : event.angleDelta();
    const double along = turned == Qt::Horizontal ? delta.x() : delta.y();
    const double distance = (isInPixels ? along : along / 120 * _scrollBar->singleStep()) + _wheelRest;
    const int whole = int(distance);
    _wheelRest = distance - whole;
    return whole;
}

} // namespace tessik
