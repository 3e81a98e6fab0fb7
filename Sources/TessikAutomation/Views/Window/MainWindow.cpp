#include "TessikAutomation/Views/Window/MainWindow.h"

#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"
#include "TessikAutomation/Views/Window/HeaderView.h"
#include "TessikAutomation/Views/Window/StatusView.h"

#include <QAction>
#include <QDockWidget>
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
    _desk->setMinimumHeight(Metrics::minStripHeight + Metrics::railHeight);
    setMinimumWidth(Metrics::minWindowWidth);
    setWindowTitle(QStringLiteral("TessikAutomation"));
    // No control has the keyboard focus until someone asks for one.
    central->setFocusPolicy(Qt::StrongFocus);
    central->setFocus();

    connect(_header, &HeaderView::settingsRequested, this, &MainWindow::openSettings);
    connect(status, &StatusView::clicked, this, &MainWindow::openSettings);
    _settingsAction = new QAction(QStringLiteral("Se&ttings…"), this);
    _settingsAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+,")));
    connect(_settingsAction, &QAction::triggered, this, &MainWindow::openSettings);
    addAction(_settingsAction);

    addZoomAction(QStringLiteral("&Larger Desk"),
                  {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))},
                  [this] { _desk->changeZoom(true); });
    addZoomAction(QStringLiteral("&Smaller Desk"), {QKeySequence(QStringLiteral("Ctrl+-"))},
                  [this] { _desk->changeZoom(false); });
    addZoomAction(QStringLiteral("&Normal Size"), {QKeySequence(QStringLiteral("Ctrl+0"))},
                  [this] { _desk->setZoom(100); });

    _foldAction = new QAction(QStringLiteral("&Fold Master Section"), this);
    _foldAction->setCheckable(true);
    _foldAction->setChecked(_desk->isFolded.value());
    connect(_foldAction, &QAction::toggled, this, [this](bool folded) { _desk->isFolded = folded; });
    _observers.push_back(_desk->isFolded.addNotifier([this] { _foldAction->setChecked(_desk->isFolded.value()); }));

    keys.onLeft = [this] { _desk->pageInputs(false); };
    keys.onRight = [this] { _desk->pageInputs(true); };

    _observers.push_back(objects.theme.theme.addNotifier([this] { applyTheme(); }));
    _observers.push_back(_system.scheme.addNotifier([this] { applyTheme(); }));
    applyTheme();
}

// The views draw with what the window owns, so they go first.
MainWindow::~MainWindow() {
    delete _settings.data();
    qDeleteAll(findChildren<QDockWidget*>(Qt::FindDirectChildrenOnly));
    delete centralWidget();
}

void MainWindow::setTransportPanel(HeaderPart* panel) { _header->setTransportPanel(panel); }
void MainWindow::setAutomationPanel(HeaderPart* panel) { _header->setAutomationPanel(panel); }
void MainWindow::setSessionTitle(const QString& title, const QString& recalled, const QString& state) {
    _header->setTitle(title, recalled, state);
}

PanelButton& MainWindow::deselectKey() { return _header->deselectKey(); }
SymbolButton& MainWindow::problemsKey() { return _header->problemsKey(); }

void MainWindow::openSettings() {
    if (!_settings) {
        _settings = new SettingsView(_objects, _drawing, this);
        _settings->setAttribute(Qt::WA_DeleteOnClose);
    }
    _settings->open();
}

bool MainWindow::restorePlace() {
    restoreState(SavedSettings::bytes(SavedSettings::Key::windowPanes));
    return restoreGeometry(SavedSettings::bytes(SavedSettings::Key::windowGeometry));
}

void MainWindow::savePlace() {
    SavedSettings::setBytes(SavedSettings::Key::windowGeometry, saveGeometry());
    SavedSettings::setBytes(SavedSettings::Key::windowPanes, saveState());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    savePlace();
    QMainWindow::closeEvent(event);
}

void MainWindow::addZoomAction(const QString& text, const QList<QKeySequence>& shortcuts,
                               std::function<void()> action) {
    auto* added = new QAction(text, this);
    added->setShortcuts(shortcuts);
    connect(added, &QAction::triggered, this, std::move(action));
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
