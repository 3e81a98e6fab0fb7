#include "TessikAutomation/Views/Desk/VerticalOnlyScrollView.h"

#include "TessikAutomation/Views/Metrics.h"

#include <QWheelEvent>

#include <cmath>

namespace tessik {

VerticalOnlyScrollView::VerticalOnlyScrollView(QWidget* parent)
    : QWidget(parent), _content(new QWidget(this)), _scrollBar(new QScrollBar(Qt::Vertical, this)) {
    _content->setAttribute(Qt::WA_OpaquePaintEvent); // its children cover it, so that scrolling copies pixels
    _content->setAttribute(Qt::WA_NoSystemBackground);
    _scrollBar->setFocusPolicy(Qt::NoFocus);
    connect(_scrollBar, &QScrollBar::valueChanged, this, &VerticalOnlyScrollView::moveContent);
}

void VerticalOnlyScrollView::setContentHeight(int height, int step) {
    _contentHeight = height;
    _scrollBar->setSingleStep(step);
    layOut();
}

void VerticalOnlyScrollView::reveal(int y, int itsHeight) {
    if (y + itsHeight > top() + height()) _scrollBar->setValue(y + itsHeight - height());
    if (y < top()) _scrollBar->setValue(y);
}

void VerticalOnlyScrollView::resizeEvent(QResizeEvent*) { layOut(); }

void VerticalOnlyScrollView::layOut() {
    _scrollBar->setRange(0, std::max(0, _contentHeight - height()));
    _scrollBar->setPageStep(height());
    _content->resize(width(), std::max(_contentHeight, height()));
    moveContent();
}

void VerticalOnlyScrollView::moveContent() {
    const bool wholeRatio = devicePixelRatioF() == std::floor(devicePixelRatioF());
    _content->move(0, -(wholeRatio ? top() : Metrics::toGrid(top())));
}

void VerticalOnlyScrollView::wheelEvent(QWheelEvent* event) {
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    const bool pixels = !event->pixelDelta().isNull();
    const int delta = pixels ? event->pixelDelta().y() : event->angleDelta().y();
    if (delta == 0 || _scrollBar->maximum() == 0 || !(_wheelScrolls || shift)) {
        event->ignore();
        return;
    }
    const double distance = (pixels ? delta : delta / 120.0 * _scrollBar->singleStep()) + _wheelRest;
    const int whole = int(distance);
    _wheelRest = distance - whole;
    _scrollBar->setValue(top() - whole);
}

} // namespace tessik
