#pragma once

#include "TessikAutomation/Session/SessionController.h"

#include <QMenu>

namespace tessik {

/// The File menu: the session's commands.
class SessionMenu final : public QMenu {
public:
    SessionMenu(SessionController& session, QWidget* parent);

private:
    void fillRecent();
    void fillReplaced();

    SessionController& _session;
    QMenu* _recent;
    QMenu* _replaced;
};

/// Opens a session file dropped on a window.
class SessionDrop final : public QObject {
public:
    /// Owned by the window.
    SessionDrop(SessionController& session, QWidget& window);

protected:
    bool eventFilter(QObject* window, QEvent* event) override;

private:
    SessionController& _session;
};

} // namespace tessik
