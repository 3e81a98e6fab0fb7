#include "TessikAutomation/Views/Window/MainWindow.h"

#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"
#include "TessikAutomation/Views/Window/HeaderView.h"
#include "TessikAutomation/Views/Window/StatusView.h"

#include <QAction>
#include <QShortcut>
#include <QVBoxLayout>

namespace tessik {

MainWindow::MainWindow(const AppObjects& objects, QWidget* parent)
    : QMainWindow(parent), keys(*this), _objects(objects), _system(AppStyle::install()) {
    auto* central = new QWidget(this);
    _header = new HeaderView(objects, _drawing, central);
    _desk = new DeskView(objects, _history, _drawing, central);
    auto* status = new StatusView(objects, _drawing, _desk);
    _desk->setStatusView(status);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_header);
    layout->addWidget(_desk, 1);
    setCentralWidget(central);
    setMinimumSize(Metrics::minWindowWidth, Metrics::minWindowHeight);
    setWindowTitle(QStringLiteral("TessikAutomation"));
    // No control has the keyboard before someone asks for one.
    central->setFocusPolicy(Qt::StrongFocus);
    central->setFocus();

    connect(_header, &HeaderView::settingsRequested, this, &MainWindow::openSettings);
    connect(status, &StatusView::clicked, this, &MainWindow::openSettings);
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+,")), this), &QShortcut::activated, this,
            &MainWindow::openSettings);

    addZoomAction(QStringLiteral("&Larger Desk"),
                  {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))},
                  [this] { _desk->changeZoom(true); });
    addZoomAction(QStringLiteral("&Smaller Desk"), {QKeySequence(QStringLiteral("Ctrl+-"))},
                  [this] { _desk->changeZoom(false); });
    addZoomAction(QStringLiteral("&Normal Size"), {QKeySequence(QStringLiteral("Ctrl+0"))},
                  [this] { _desk->setZoom(100); });

    keys.onLeft = [this] { _desk->pageInputs(false); };
    keys.onRight = [this] { _desk->pageInputs(true); };

    _observers.push_back(objects.theme.bindableTheme().addNotifier([this] { applyTheme(); }));
    _observers.push_back(_system.scheme.addNotifier([this] { applyTheme(); }));
    applyTheme();
}

// The views draw with what the window holds, so they go first.
MainWindow::~MainWindow() {
    delete _settings.data();
    delete centralWidget();
}

void MainWindow::setTransportPanel(QWidget* panel) { _header->setTransportPanel(panel); }
void MainWindow::setAutomationPanel(QWidget* panel) { _header->setAutomationPanel(panel); }
void MainWindow::setSessionTitle(const QString& title, const QString& detail) { _header->setTitle(title, detail); }

SymbolButton& MainWindow::problemsKey() { return _header->problemsKey(); }

void MainWindow::openSettings() {
    if (!_settings) {
        _settings = new SettingsView(_objects, _drawing, this);
        _settings->setAttribute(Qt::WA_DeleteOnClose);
    }
    _settings->open();
}

void MainWindow::addZoomAction(const QString& text, const QList<QKeySequence>& shortcuts,
                               std::function<void()> action) {
    auto* added = new QAction(text, this);
    added->setShortcuts(shortcuts);
    connect(added, &QAction::triggered, this, action);
    addAction(added);
    _zoomActions.append(added);
}

void MainWindow::applyTheme() {
    if (!_objects.theme.preferredColorScheme()) _system.follow();
    const Look& look = Look::of(_objects.theme.effectiveScheme(_system.scheme));
    AppStyle::apply(look);
    _drawing.look = &look;
}

} // namespace tessik
