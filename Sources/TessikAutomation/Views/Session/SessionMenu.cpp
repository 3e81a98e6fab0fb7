#include "TessikAutomation/Views/Session/SessionMenu.h"

#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Views/Controls/TextButton.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>

namespace tessik {
SessionMenu::SessionMenu(SessionController& session, QWidget* parent)
    : QMenu(QStringLiteral("&File"), parent), _session(session) {
    const auto add = [this](const QString& text, const char* keys, auto action) {
        QAction* added = addAction(text);
        added->setShortcut(QKeySequence(QLatin1String(keys)));
        connect(added, &QAction::triggered, this, action);
        return added;
    };
    add(QStringLiteral("&New Session"), "Ctrl+N", [this] { _session.newSession(); });
    add(QStringLiteral("&Open Session…"), "Ctrl+O", [this] { _session.open(); });
    _recent = addMenu(QStringLiteral("Open &Recent"));
    connect(_recent, &QMenu::aboutToShow, this, &SessionMenu::fillRecent);
    add(QStringLiteral("&Save Session"), "Ctrl+S", [this] { _session.save(); });
    add(QStringLiteral("Save Session &As…"), "Ctrl+Shift+S", [this] { _session.saveAs(); });
    addSeparator();
    _replaced = addMenu(QStringLiteral("Re&placed Sessions"));
    connect(_replaced, &QMenu::aboutToShow, this, &SessionMenu::fillReplaced);
    addSeparator();
}

void SessionMenu::fillRecent() {
    _recent->clear();
    for (const QString& path : SavedSettings::recentSessions()) {
        QAction* action = _recent->addAction(literally(QFileInfo(path).completeBaseName()));
        action->setToolTip(path);
        connect(action, &QAction::triggered, this, [this, path] { _session.open(QUrl::fromLocalFile(path)); });
    }
    if (_recent->isEmpty()) _recent->addAction(QStringLiteral("No Recent Sessions"))->setEnabled(false);
    _recent->setToolTipsVisible(true);
}

void SessionMenu::fillReplaced() {
    _replaced->clear();
    for (const ReplacedSession& session : _session.replacedSessions()) {
        QAction* action = _replaced->addAction(
            literally(session.origin.name() + QStringLiteral("  —  ") + proposedName(session.replacedAt)));
        action->setToolTip(session.origin.sessionPath);
        connect(action, &QAction::triggered, this, [this, session] { _session.reopen(session); });
    }
    if (_replaced->isEmpty()) _replaced->addAction(QStringLiteral("No Replaced Sessions"))->setEnabled(false);
    _replaced->setToolTipsVisible(true);
}

SessionDrop::SessionDrop(SessionController& session, QWidget& window) : QObject(&window), _session(session) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool SessionDrop::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop) return false;
    auto* drop = static_cast<QDropEvent*>(event); // a drag entering is one too
    const QList<QUrl> urls = drop->mimeData()->urls();
    if (urls.size() != 1 || !urls.constFirst().isLocalFile()) return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (event->type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, url = urls.constFirst()] { _session.open(url); },
            Qt::QueuedConnection); // after the drag has ended
    return true;
}

} // namespace tessik
