#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include "TessikAutomation/Views/Controls/ControlHost.h"
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Controls/Popover.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>

namespace tessik {
namespace {

bool isTapeKey(int key) { return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter; }

bool isInList(const QWidget* part) {
    while (part && !qobject_cast<const Popover*>(part))
        part = part->parentWidget();
    return part;
}

/// Whether the focused widget wants the key for itself.
bool isTaken(int key, bool isLetter) {
    if (QApplication::activePopupWidget()) return true;
    const QWidget* focus = QApplication::focusWidget();
    if (!focus) return false;
    if (focus->testAttribute(Qt::WA_InputMethodEnabled)) { // text is being edited
        const auto* entry = qobject_cast<const EntryField*>(focus);
        return !(entry && entry->isWaiting() && isTapeKey(key));
    }
    const auto* host = qobject_cast<const ControlHost*>(focus);
    if (isLetter && host && host->focusedControl() >= 0 && host->view(host->focusedControl()).isTypedWith(QChar(key)))
        return true; // a value is about to be typed
    return qobject_cast<const QMenuBar*>(focus) || (!isLetter && isInList(focus));
}

} // namespace

KeyboardArrowHandler::KeyboardArrowHandler(QWidget& window) : QObject(&window), _window(window) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool KeyboardArrowHandler::eventFilter(QObject* receiver, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !receiver->isWidgetType()) return false;
    const auto& widget = static_cast<const QWidget&>(*receiver);
    const auto& press = static_cast<const QKeyEvent&>(*event);
    if (widget.window() != &_window || press.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const int key = press.key();
    const auto letter = letters.find(key | int(press.modifiers() & Qt::ShiftModifier));
    const bool pages = key == Qt::Key_Left || key == Qt::Key_Right;
    const std::function<void()>* const action = letter != letters.end() ? &letter->second
                                                : key == Qt::Key_Left   ? &onLeft
                                                : key == Qt::Key_Right  ? &onRight
                                                : key == Qt::Key_Space  ? &onPlayStop
                                                : isTapeKey(key)        ? &onReturnToStart
                                                                        : nullptr;
    if (!action || !*action || isTaken(key, letter != letters.end())) return false;
    // A key held down keeps paging, but does not play and stop in turn.
    if (pages || !press.isAutoRepeat()) (*action)();
    return true;
}

} // namespace tessik
