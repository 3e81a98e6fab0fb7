#include "TessikAutomation/Views/Controls/EntryField.h"

#include <QKeyEvent>

#include <utility>

namespace tessik {

void EntryField::waitForTyping() {
    if (std::exchange(_isWaiting, true)) return;
    connect(
        this, &QLineEdit::textEdited, this, [this] { _isWaiting = false; }, Qt::SingleShotConnection);
}

bool EntryField::event(QEvent* event) {
    // Before Qt takes Tab for itself.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            event->accept();
            Q_EMIT moved(key == Qt::Key_Tab);
            return true;
        }
    }
    return QLineEdit::event(event);
}

void EntryField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: Q_EMIT kept(); break;
    case Qt::Key_Escape: Q_EMIT dropped(); break;
    default: QLineEdit::keyPressEvent(event);
    }
    event->accept();
}

void EntryField::mouseReleaseEvent(QMouseEvent* event) {
    QLineEdit::mouseReleaseEvent(event);
    if (_isWaiting && !hasSelectedText()) selectAll();
}

void EntryField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // A menu of the field itself, or a window over this one, does not count as elsewhere.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) Q_EMIT left();
}

} // namespace tessik
