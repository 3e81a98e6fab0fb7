#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace tessik {

KeyboardArrowHandler::KeyboardArrowHandler(QWidget& window) : QObject(&window), _window(window) {
    QCoreApplication::instance()->installEventFilter(this);
}

const std::function<void()>* KeyboardArrowHandler::action(int key) const {
    switch (key) {
    case Qt::Key_Left: return &onLeft;
    case Qt::Key_Right: return &onRight;
    case Qt::Key_Space: return &onPlayStop;
    case Qt::Key_Return:
    case Qt::Key_Enter: return &onReturnToStart;
    default: return nullptr;
    }
}

bool KeyboardArrowHandler::eventFilter(QObject* receiver, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !receiver->isWidgetType()) return false;
    const auto& widget = static_cast<const QWidget&>(*receiver);
    const auto& press = static_cast<const QKeyEvent&>(*event);
    if (widget.window() != &_window || press.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const QWidget* focus = QApplication::focusWidget();
    if (focus && focus->testAttribute(Qt::WA_InputMethodEnabled)) return false; // a text is edited
    const std::function<void()>* const chosen = action(press.key());
    if (!chosen || !*chosen) return false;
    // A key held down pages on, but does not play and stop in turn.
    const bool pages = press.key() == Qt::Key_Left || press.key() == Qt::Key_Right;
    if (pages || !press.isAutoRepeat()) (*chosen)();
    return true;
}

} // namespace tessik
