#include "TessikAutomation/Views/Help/HelpMenu.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Controls/Popover.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QWindow>

namespace tessik {

HelpMenu::HelpMenu(DrawingContext& drawing, QWidget& window)
    : QMenu(QStringLiteral("&Help"), &window),
      _drawing(drawing),
      _window(window),
      _lookObserver(drawing.look.addNotifier([this] {
          if (_view) _view->setLook(*_drawing.look.value());
      })) {
    QAction* manual = addAction(QStringLiteral("TessikAutomation &Manual"), this, [this] { openManual(); });
    manual->setShortcut(QKeySequence(Qt::Key_F1)); // shown here; the filter below is faster than the menu
    for (const char* title : {"Keyboard Shortcuts", "Troubleshooting"})
        addAction(QLatin1String(title), this, [this, title] { openManual(QLatin1String(title)); });
    addSeparator();
    addAction(QStringLiteral("&About TessikAutomation"), this, &HelpMenu::about);
    qApp->installEventFilter(this);
}

HelpMenu::~HelpMenu() { delete _view; }

void HelpMenu::openManual(const QString& title) {
    if (!_view) {
        _view = new HelpView(*_drawing.look.value());
        _view->setAttribute(Qt::WA_DeleteOnClose);
        _view->winId(); // creates the underlying window
    }
    if (!title.isEmpty()) _view->showTopic(title);
    // While a dialog is open, only its own children can be used.
    const QWidget* dialog = QApplication::activeModalWidget();
    _view->windowHandle()->setTransientParent(dialog ? dialog->windowHandle() : nullptr);
    _view->show();
    _view->raise();
    _view->activateWindow();
}

/// The menu or list that is open, else the widget with the keyboard, or, if that is nothing in particular, the one
/// under the pointer.
const QWidget* HelpMenu::whereTheUserIs() const {
    if (const QWidget* menu = QApplication::activePopupWidget()) return menu;
    const QWidget* active = QApplication::activeWindow();
    if (!active) return &_window;
    for (const Popover* popover : active->findChildren<Popover*>())
        if (popover->isVisible()) return popover;
    const QWidget* focus = QApplication::focusWidget();
    if (focus && hasHelpContext(focus)) return focus;
    const QWidget* pointed = QApplication::widgetAt(QCursor::pos());
    return pointed && pointed->window() == active ? pointed : active;
}

bool HelpMenu::eventFilter(QObject* receiver, QEvent* event) {
    const bool isAnnounced = event->type() == QEvent::ShortcutOverride;
    if ((!isAnnounced && event->type() != QEvent::KeyPress) || !receiver->isWidgetType()) return false;
    const auto& press = static_cast<const QKeyEvent&>(*event);
    if (press.key() != Qt::Key_F1 || press.modifiers()) return false;
    event->accept();
    if (isAnnounced) return true;
    const QWidget* where = whereTheUserIs();
    if (where->window() == _view) return true;
    const QString title = chapterTitle(where);
    while (QWidget* menu = QApplication::activePopupWidget())
        menu->close();
    openManual(title);
    return true;
}

void HelpMenu::about() {
    auto* box = new QMessageBox(&_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QStringLiteral("About TessikAutomation"));
    box->setIconPixmap(_window.windowIcon().pixmap(64));
    box->setText(QStringLiteral("TessikAutomation %1").arg(QLatin1String(TESSIK_VERSION)));
    box->setInformativeText(
        QStringLiteral("Fader automation, snapshots and a written record for an analog in-line console.\n\nQt %1")
            .arg(QLatin1String(qVersion())));
    box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box->open();
}

} // namespace tessik
