#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikAutomation/Views/Help/HelpView.h"

#include <QMenu>
#include <QPointer>

namespace tessik {

/// The Help menu, and F1 in every window, dialog and menu: opens the chapter that explains where the user is. The
/// manual has one window, which neither blocks nor is blocked, and starts afresh after being closed.
class HelpMenu final : public QMenu {
    Q_OBJECT

public:
    /// `window` is the main window, which owns the menu.
    HelpMenu(DrawingContext& drawing, QWidget& window);
    ~HelpMenu() override;

    /// Opens the manual or brings it to the front: at that chapter, or where it is if the title is empty.
    void openManual(const QString& title = {});
    /// The manual's window while it is open.
    HelpView* view() const { return _view; }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    const QWidget* whereTheUserIs() const;
    void about();

    DrawingContext& _drawing;
    QWidget& _window;
    QPointer<HelpView> _view;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
