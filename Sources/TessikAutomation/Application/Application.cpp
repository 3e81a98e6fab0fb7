#include "TessikAutomation/Application/Application.h"

#include "TessikAutomation/Desk/StartupRestore.h"
#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Session/LocateTarget.h"
#include "TessikAutomation/Views/Automation/AutomationPanelView.h"
#include "TessikAutomation/Views/Automation/PassLanesView.h"
#include "TessikAutomation/Views/Automation/PassesPopover.h"
#include "TessikAutomation/Views/Help/HelpMenu.h"
#include "TessikAutomation/Views/Monitor/MIDIMonitorView.h"
#include "TessikAutomation/Views/Session/SessionMenu.h"
#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"
#include "TessikAutomation/Views/Transport/TransportPanelView.h"
#include "TessikAutomation/Views/Welcome/WelcomeView.h"
#include "TessikAutomation/Views/Window/ProblemsPopover.h"
#include "TessikAutomation/Views/Window/ZeroConsoleMenu.h"

#include <QApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMenuBar>
#include <QScreen>
#include <QUndoStack>

namespace tessik {

namespace {

Q_LOGGING_CATEGORY(startup, "tessik.startup", QtWarningMsg)

/// Logs when a window has first been painted, to measure how long that took.
class FirstFrameNotice final : public QObject {
public:
    explicit FirstFrameNotice(QWidget* window) : QObject(window) { window->installEventFilter(this); }
    bool eventFilter(QObject* window, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            window->removeEventFilter(this);
            QMetaObject::invokeMethod(
                this, [] { qCDebug(startup, "first frame painted"); }, Qt::QueuedConnection);
        }
        return false;
    }
};

template <typename Ports>
std::optional<std::int32_t> portNamed(const Ports& ports, const QString& name) {
    for (const MIDIPortInfo& port : ports)
        if (port.name == name) return port.uniqueID;
    return std::nullopt;
}

/// In a window title, "[*]" marks where changes are indicated; in a name it is just text.
QString inTitle(QString name) { return name.replace(QLatin1String("[*]"), QLatin1String("[*][*]")); }

} // namespace

/// Asks before the main window closes, and ends the program with it: no other window keeps it alive.
class Application::CloseQuestion final : public QObject {
public:
    explicit CloseQuestion(Application& application) : _application(application) {
        application.window.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Close) return false;
        if (!_application.session.prepareToQuit()) {
            event->ignore();
            return true;
        }
        QApplication::quit();
        return false;
    }

private:
    Application& _application;
};

Application::Application(MIDIService& service, const QString& recoveryRoot)
    : desk(service, QStringLiteral("TessikAutomation")),
      mtcClock(service, QStringLiteral("TessikAutomation Timecode")),
      passEngine(desk.model, mtcClock, desk.output, snapshots),
      transport(service),
      snapshotRecall(desk.model, manualSettings, desk.output),
      window({theme, desk, mtcClock, transport, manualSettings, channelLabels, masterSection}),
      dialogs(window),
      session({snapshots, passes, manualSettings, channelLabels, masterSection, locators}, dialogs, recoveryRoot),
      problems({desk, mtcClock, transport, passEngine, session}),
      _passFiles(passes, passEngine, window.history(), desk.output, mtcClock, dialogs) {
    desk.output.setupClient();
    desk.output.refreshDestinations();
    if (const auto rate = SavedSettings::midiOutMessagesPerSecond()) desk.output.setMessagesPerSecond(*rate);
    restoreModelSize(desk.model);

    _stopListener = transport.stopSent.connect([this] { passEngine.noteStopSent(); });
    passEngine.onTakeSuperseded = [this](const AutomationPass& take) { passes.save(take); };
    session.pendingTake = [this] { return passEngine.pendingTake(); };
    session.storePendingTake = [this](const QString& name) { passEngine.finishRecording(name, passes); };
    session.isRecordingTake = [this] { return passEngine.isRecording(); };
    const auto noteTake = [this] {
        session.noteTake();
        showTitle();
    };
    _observers.push_back(passEngine.recordingPass.addNotifier(noteTake));
    _observers.push_back(passEngine.waitingTake.addNotifier(noteTake));
    session.onSessionLoaded = [this] {
        passEngine.noteSessionReplaced();
        setLoadedItem(std::nullopt);
        window.history().clear();
        snapshotRecall.recallDefault(snapshots);
    };

    auto* panel = new TransportPanelView(
        mtcClock, locators, transport, window.history(), [this] { return playedPassEnd(); }, &window);
    setHelpContext(*panel, HelpContext::transport);
    window.setTransportPanel(panel);
    _observers.push_back(passEngine.playedPass.addNotifier([panel] { panel->refresh(); }));
    panel->bindKeys(window.keys);

    QApplication::setQuitOnLastWindowClosed(false);
    _closeQuestion = std::make_unique<CloseQuestion>(*this);
    new SessionDrop(session, window);
    buildMenus();
    buildAutomation();
    buildProblems();
    const auto show = [this] { showTitle(); };
    _observers.push_back(snapshots.snapshots.addNotifier(show));
    _observers.push_back(passes.passes.addNotifier(show));
    _observers.push_back(session.fileURL.addNotifier(show));
    _observers.push_back(session.hasUnsavedChanges.addNotifier(show));
    _observers.push_back(session.isSaving.addNotifier(show));
    showTitle();
}

Application::~Application() = default;

std::optional<TimecodePosition> Application::playedPassEnd() const {
    const std::optional<AutomationPass>& pass = passEngine.playedPass.value();
    if (!pass) return std::nullopt;
    const auto lastOffset = pass->events.isEmpty() ? std::nullopt : std::optional(pass->events.constLast().frameOffset);
    return LocateTarget::passEnd(pass->startTimecode, lastOffset);
}

void Application::buildMenus() {
    auto* file = new SessionMenu(session, &window);
    setHelpContext(*file, HelpContext::snapshots);
    window.menuBar()->addMenu(file);
    file->addAction(window.settingsAction());
    file->addAction(QStringLiteral("&Quit"), QKeySequence(QStringLiteral("Ctrl+Q")), &window, [this] { quit(); });
    QMenu* edit = window.menuBar()->addMenu(QStringLiteral("&Edit"));
    const auto add = [edit](QAction* action, const char* keys) {
        action->setShortcut(QKeySequence(QLatin1String(keys)));
        edit->addAction(action);
    };
    add(window.history().createUndoAction(edit), "Ctrl+Z");
    add(window.history().createRedoAction(edit), "Ctrl+Shift+Z");
    _view = window.menuBar()->addMenu(QStringLiteral("&View"));
    _view->addActions(window.zoomActions());
    _view->addSeparator();
    _view->addAction(window.foldAction());
    _view->addSeparator();
    _view->addAction(QStringLiteral("&MIDI Monitor"), &window, [this] { showMonitor(); });
    _help = new HelpMenu(window.drawing(), window);
    window.menuBar()->addMenu(_help);
}

void Application::showMonitor() {
    if (!_monitor) {
        MIDIMonitor ports;
        ports.watch(QStringLiteral("MIDI In"), desk.input.connection.words());
        ports.watch(QStringLiteral("MIDI Out"), desk.output.port.words());
        ports.watch(QStringLiteral("MTC Source"), mtcClock.connection.words());
        ports.watch(QStringLiteral("Send To"), transport.port.words());
        _monitor = new MIDIMonitorView(std::move(ports), &window);
    }
    _monitor->show();
    _monitor->raise();
    _monitor->activateWindow();
}

void Application::buildAutomation() {
    auto* panel = new AutomationPanelView(passEngine, desk.model, mtcClock, window.drawing());
    window.setAutomationPanel(panel);
    panel->bindKeys(window.keys);
    auto* zero = new ZeroConsoleMenu({desk.model, desk.output, manualSettings, channelLabels, masterSection},
                                     window.history(), &window);
    setHelpContext(*zero, HelpContext::zeroConsole);
    PanelButton& zeroKey = panel->addKey(QStringLiteral("ZERO"), QStringLiteral("zero"));
    setHelpContext(zeroKey, HelpContext::zeroConsole);
    zeroKey.setToolTip(QStringLiteral("Zero Console"));
    zeroKey.setAccessibleName(QStringLiteral("Zero Console"));
    QObject::connect(&zeroKey, &QAbstractButton::clicked, zero,
                     [zero, &zeroKey] { zero->popup(zeroKey.mapToGlobal(QPoint(0, zeroKey.height()))); });
    auto* recalls = new SnapshotsPopover(snapshots, snapshotRecall, window.history(),
                                         panel->addButton(QStringLiteral("snapshots"), QStringLiteral("Snapshots")),
                                         window.drawing(), window.centralWidget());
    setHelpContext(*recalls, HelpContext::snapshots);
    QObject::connect(recalls, &SnapshotsPopover::recalled, [this](const Snapshot& snapshot) {
        setLoadedItem(LoadedItem{LoadedItemType::snapshot, snapshot.id});
    });
    QObject::connect(recalls, &SnapshotsPopover::recallUndone, [this] { // a pass that is selected is named again
        const std::optional<AutomationPass>& pass = passEngine.playedPass.value();
        setLoadedItem(pass ? std::optional(LoadedItem{LoadedItemType::pass, pass->id}) : std::nullopt);
    });
    auto* takes =
        new PassesPopover(passEngine, passes, window.history(), panel->addButton(QStringLiteral("passes"), {}),
                          window.drawing(), window.centralWidget());
    setHelpContext(*takes, HelpContext::passes);
    QObject::connect(takes, &PassesPopover::chosen, [this](const AutomationPass& pass) {
        setLoadedItem(LoadedItem{LoadedItemType::pass, pass.id});
    });
    QObject::connect(&window.deselectKey(), &QAbstractButton::clicked, takes,
                     [this] { passEngine.select(std::nullopt); });
    QObject::connect(takes, &PassesPopover::lanesWanted, [this](const AutomationPass& pass) {
        PassLanesView::open(pass, {passes, passEngine, channelLabels, mtcClock, transport, window.drawing()},
                            window.keys, &window);
    });
    QObject::connect(takes, &PassesPopover::exportWanted,
                     [this](const AutomationPass& pass) { _passFiles.exportPass(pass); });
    QObject::connect(takes, &PassesPopover::importWanted, [this] { _passFiles.importPass(); });
    _observers.push_back(passEngine.playedPass.addNotifier([this] {
        if (const auto& pass = passEngine.playedPass.value())
            setLoadedItem(LoadedItem{LoadedItemType::pass, pass->id});
        else if (_loadedItem && _loadedItem->type == LoadedItemType::pass)
            setLoadedItem(std::nullopt);
    }));
}

void Application::buildProblems() {
    auto* list = new ProblemsPopover(problems.problems, window.problemsKey(), window.drawing(), window.centralWidget());
    setHelpContext(*list, HelpContext::problems);
    list->onSettingsWanted = [this] { window.openSettings(); };
    list->onRigWanted = [this] { onRigWanted(); };
}

void Application::setLoadedItem(const std::optional<LoadedItem>& item) {
    _loadedItem = item;
    showTitle();
}

bool Application::isTakeLoaded() const {
    const auto& take = passEngine.waitingTake.value();
    return take && _loadedItem && _loadedItem->type == LoadedItemType::pass && take->id == _loadedItem->id;
}

QString Application::loadedItemText() const {
    if (isTakeLoaded()) return QStringLiteral("Take");
    if (!_loadedItem) return {};
    const auto text = [](const QString& kind, const auto& record) {
        return record && !record->name.isEmpty() ? kind + record->name : QString();
    };
    return _loadedItem->type == LoadedItemType::pass
               ? text(QStringLiteral("Pass: "), passes.find(_loadedItem->id))
               : text(QStringLiteral("Snapshot: "), snapshots.find(_loadedItem->id));
}

void Application::showTitle() {
    const bool changed = session.hasUnsavedChanges.value();
    const QString loaded = loadedItemText();
    window.setWindowTitle(inTitle(session.displayName()) + QStringLiteral("[*]") +
                          (loaded.isEmpty() ? QString() : QStringLiteral("  —  ") + inTitle(loaded)));
    const bool hasTake = passEngine.recordingPass.value().has_value(); // being recorded, or waiting for its name
    window.setWindowModified(changed || hasTake);
    const QString state = session.isSaving.value()  ? QStringLiteral("saving…")
                          : isTakeLoaded()          ? QStringLiteral("not saved")
                          : hasTake                 ? QStringLiteral("take not saved")
                          : changed                 ? QStringLiteral("edited")
                          : session.fileURL.value() ? QStringLiteral("saved")
                                                    : QStringLiteral("new session");
    const bool isPass = _loadedItem && _loadedItem->type == LoadedItemType::pass;
    window.deselectKey().setVisible(isPass && !loaded.isEmpty() && !isTakeLoaded() && passEngine.selectedPass.value());
    window.setSessionTitle(session.displayName(), loaded, state);
}

void Application::quit() { window.close(); }

void Application::leave(int status) {
    session.leave();
    window.savePlace();
    QApplication::exit(status);
}

void Application::restorePorts() {
    restoreMIDIConnections(desk.input.connection, desk.output, mtcClock.connection, transport);
}

void Application::connectToRig() {
    const auto source = [](MIDIInputConnection& connection, const QString& name) {
        connection.selectSource(portNamed(connection.availableSources.value(), name));
    };
    const auto destination = [](MIDIDestinationPort& port, const QString& name) {
        port.selectDestination(portNamed(port.availableDestinations.value(), name));
    };
    source(desk.input.connection, SimulatedConsole::portName());
    destination(desk.output.port, SimulatedConsole::portName());
    source(mtcClock.connection, SimulatedRecorder::portName);
    destination(transport.port, SimulatedRecorder::portName);
}

void Application::welcome() {
    if (!WelcomeView::isDue()) return;
    auto* card = new WelcomeView(*window.drawing().look.value(), problems.noMIDI.value(), &window);
    card->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(card, &QDialog::finished, &window, [this](int choice) {
        if (choice == WelcomeView::setUpMIDI) window.openSettings();
        if (choice == WelcomeView::useRig) onRigWanted();
        if (choice == WelcomeView::readManual) _help->openManual();
    });
    card->open();
}

void Application::begin(const QString& sessionFile) {
    if (!sessionFile.isEmpty()) session.open(QUrl::fromLocalFile(QFileInfo(sessionFile).absoluteFilePath()));
    session.offerRecovery();
}

void Application::showWindow() {
    new FirstFrameNotice(&window);
    if (!window.restorePlace()) window.setGeometry(window.screen()->availableGeometry().adjusted(80, 80, -80, -80));
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace tessik
