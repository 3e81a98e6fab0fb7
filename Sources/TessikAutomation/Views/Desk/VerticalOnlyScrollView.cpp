#include "TessikAutomation/Views/Desk/VerticalOnlyScrollView.h"

#include <QWheelEvent>

namespace tessik {

void VerticalOnlyScrollView::reveal(int y, int itsHeight) {
    if (y + itsHeight > top() + height()) scrollBar()->setValue(y + itsHeight - height());
    if (y < top()) scrollBar()->setValue(y);
}

void VerticalOnlyScrollView::wheelEvent(QWheelEvent* event) {
    const bool isShifted = event->modifiers() & Qt::ShiftModifier;
    const QPoint delta = event->pixelDelta().isNull() ? event->angleDelta() : event->pixelDelta();
    if (delta.y() == 0 || scrollBar()->maximum() == 0 || !(_wheelScrolls || isShifted)) {
        event->ignore();
        return;
    }
    scrollBar()->setValue(top() - wheelDistance(*event, Qt::Vertical));
}

} // namespace tessik
