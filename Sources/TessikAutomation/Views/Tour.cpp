#include "TessikAutomation/Views/Tour.h"

#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProcess>
#include <QPushButton>
#include <QTimer>

#include <csignal>

namespace tessik {

namespace {

void sendMouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButtons held) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

} // namespace

Tour::Tour(Application& application, Rig& rig, const QString& folder, QString recoveryRoot)
    : _app(application), _rig(rig), _folder(folder), _recoveryRoot(std::move(recoveryRoot)), _guide(folder) {}

int Tour::run() {
    if (!_guide.isUsable()) return 1;
    _app.showWindow();
    _app.window.setGeometry(0, 0, 1600, 900);
    connect();
    hearScene();
    handMoves();
    screenMoves();
    loseTheCable();
    rollTape();
    saveSession();
    crashAndRecover();
    settings();
    appearances();
    return _guide.finish() == 0 ? 0 : 1;
}

void Tour::connect() {
    _guide.beginStep(QStringLiteral("Connect the desk"));
    _guide.check(_app.midiOutput.port.statusText.value() == QLatin1String("Not connected"),
                 QStringLiteral("nothing is connected at first"));
    _app.connectToRig();
    _guide.check(_app.midiManager.connection.statusText.value() == QLatin1String("Connected: Rig Console"),
                 QStringLiteral("MIDI In: ") + _app.midiManager.connection.statusText.value());
    _guide.check(_app.midiOutput.port.statusText.value() == QLatin1String("Output: Rig Console"),
                 QStringLiteral("MIDI Out: ") + _app.midiOutput.port.statusText.value());
}

void Tour::hearScene() {
    _guide.beginStep(QStringLiteral("Recall a scene on the desk, so that it tells what it holds"));
    _rig.desk.recallScene(0);
    _guide.check(_guide.waitFor([this] { return _app.consoleModel.messageCount.value() == 2 * channelCount; }),
                 QStringLiteral("all %1 messages of the scene arrived").arg(2 * channelCount));
    compareDesk();
    int matched = 0;
    for (const ChannelState* channel : _app.consoleModel.allVisibleChannels())
        matched += channel->nullMatch() == ChannelState::NullMatch::matched;
    _guide.check(matched == channelCount, QStringLiteral("%1 of %2 channels matched").arg(matched).arg(channelCount));
    _guide.picture(_app.window, QStringLiteral("scene"));
}

void Tour::handMoves() {
    _guide.beginStep(QStringLiteral("Hands move faders: the arrows point back to where the VCAs stood"));
    const auto move = [this](int input, int by) {
        const ChannelKind kind = ChannelKind::input(input);
        const int from = _rig.desk.vca(kind);
        const int to = std::clamp(from + by, 0, 127);
        for (int value = from; value != to; value += by > 0 ? 1 : -1) {
            _rig.desk.moveFader(kind, value);
            _guide.passTime(2);
        }
        _rig.desk.moveFader(kind, to);
    };
    _guide.passTime(600); // what comes sooner still belongs to the scene
    move(2, -30);
    move(4, 12);
    move(7, -18);
    compareDesk();
    const auto match = [this](int input) {
        return _app.consoleModel.channelState(ChannelKind::input(input))->nullMatch();
    };
    _guide.check(match(2) == ChannelState::NullMatch::needsUp, QStringLiteral("channel 2 must go up"));
    _guide.check(match(4) == ChannelState::NullMatch::needsDown, QStringLiteral("channel 4 must go down"));
    _guide.check(match(5) == ChannelState::NullMatch::matched, QStringLiteral("channel 5 is matched"));
    _guide.picture(_app.window, QStringLiteral("null-arrows"));
}

void Tour::screenMoves() {
    _guide.beginStep(QStringLiteral("Drag faders and click switches on the screen: the desk follows"));
    dragFader(ChannelKind::input(1), 100, 30);
    dragFader(ChannelKind::input(3), 30, 110);
    dragFader(ChannelKind::stereo(), 90, 106);
    clickControl(*_app.window.desk().strip(ChannelKind::input(6)), QStringLiteral("chanMuted"));
    clickControl(*_app.window.desk().inputModule(6), QStringLiteral("eqOn"));
    compareDesk();
    _guide.check(std::abs(_rig.desk.vca(ChannelKind::input(1)) - 30) <= 1 &&
                     std::abs(_rig.desk.vca(ChannelKind::stereo()) - 106) <= 1,
                 QStringLiteral("the desk's VCAs stand where the faders were dragged"));
    _guide.picture(_app.window, QStringLiteral("screen-moves"));
}

void Tour::loseTheCable() {
    _guide.beginStep(QStringLiteral("MIDI Out is unplugged while the mix goes on, and comes back"));
    const QString port = SimulatedConsole::portName();
    _rig.service.unplug(port);
    _guide.check(_guide.waitFor([this] {
        return _app.midiOutput.port.statusText.value() == QStringLiteral("Output: reconnecting…") &&
               _app.midiManager.connection.statusText.value() == QStringLiteral("Source reconnecting…");
    }),
                 QStringLiteral("both ports say that they are reconnecting"));
    dragFader(ChannelKind::group(1), 100, 60);
    _guide.check(_rig.desk.vca(ChannelKind::group(1)) != _app.consoleModel.groups()[0]->faderValue.value(),
                 QStringLiteral("the desk cannot follow now"));
    _guide.picture(_app.window, QStringLiteral("cable-out"));
    _rig.service.plug(port);
    _guide.check(_guide.waitFor([this] {
        return _app.midiOutput.port.statusText.value() == QStringLiteral("Output: Rig Console") &&
               _app.midiManager.connection.statusText.value() == QStringLiteral("Connected: Rig Console");
    }),
                 QStringLiteral("both ports are found again"));
    compareDesk();
}

void Tour::rollTape() {
    _guide.beginStep(QStringLiteral("Locate the recorder, play it, stop it"));
    const TimecodePosition goal{MTCFrameRate::fps25, 1, 7, 42, 0};
    _app.transport.locate(goal);
    _guide.check(_guide.waitFor([&] { return _app.mtcClock.currentPosition.value() == goal; }),
                 QStringLiteral("the counter stands at %1, with no timecode running").arg(goal.displayString()));
    _guide.check(!_app.mtcClock.isRunning.value(), QStringLiteral("a located machine does not roll"));
    QApplication::setActiveWindow(&_app.window);
    pressKey(Qt::Key_Space);
    _guide.check(_guide.waitFor([&] { return _app.mtcClock.isRunning.value(); }),
                 QStringLiteral("Space plays: LOCKED"));
    _guide.passTime(700);
    const Uptime now = UptimeClock::system().now();
    const std::optional<double> frame = _app.mtcClock.frame(now);
    const double truth = _rig.recorder.truePosition(now);
    _guide.check(frame && std::abs(*frame - truth) < 0.25, QStringLiteral("the lock is at frame %1, the tape at %2")
                                                               .arg(frame.value_or(-1), 0, 'f', 2)
                                                               .arg(truth, 0, 'f', 2));
    _guide.check(_app.mtcClock.currentPosition.value()->frameRate == MTCFrameRate::fps25, QStringLiteral("at 25 fps"));
    _guide.picture(_app.window, QStringLiteral("locked"));
    pressKey(Qt::Key_Space);
    _guide.check(_guide.waitFor([&] { return !_app.mtcClock.isRunning.value(); }), QStringLiteral("Space stops"));
    const auto frozen = _app.mtcClock.currentPosition.value();
    _guide.passTime(200);
    _guide.check(frozen && frozen == _app.mtcClock.currentPosition.value(),
                 QStringLiteral("the counter is frozen at %1").arg(frozen ? frozen->displayString() : QString()));
    _guide.picture(_app.window, QStringLiteral("stopped"));
}

void Tour::pressKey(Qt::Key key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(_app.window.centralWidget(), &press);
}

void Tour::fillSession(const QString& name) {
    _app.snapshots.save(_app.snapshotRecall.capture(name, currentSecond()));
    _app.snapshots.setDefault(_app.snapshots.snapshots.value().constLast().id);
    _app.channelLabels.update({name, QStringLiteral("E0553F")}, QStringLiteral("input-1"));
    ManualChannelSettings manual = _app.manualSettings.settings(QStringLiteral("input-5"));
    manual.eqHiMidGain += 1.5;
    _app.manualSettings.store(QStringLiteral("input-5"), manual);
    MasterSectionSettings master = _app.masterSection.settings();
    master.controlRoomLevel += 2;
    master.effectsReturns[1].pan = -0.25;
    _app.masterSection.setSettings(master);
    _app.locators.setStart(TimecodePosition{MTCFrameRate::fps25, 1, 0, 0, 0});
    _app.locators.setEnd(TimecodePosition{MTCFrameRate::fps25, 1, 3, 30, 12});
    AutomationPass pass;
    pass.id = QUuid::createUuid();
    pass.name = name;
    pass.createdAt = currentSecond();
    pass.frameRate = MTCFrameRate::fps25;
    pass.startTimecode = {MTCFrameRate::fps25, 1, 0, 0, 0};
    for (int i = 0; i < 1000; ++i)
        pass.events.append({i, ChannelKind::input(1 + i % 32), PassEventValue::fader(i % 128)});
    _app.passes.save(pass);
}

void Tour::saveSession() {
    _guide.beginStep(QStringLiteral("Fill a session and save it"));
    fillSession(QStringLiteral("Verse"));
    _guide.check(_app.session.hasUnsavedChanges.value(), QStringLiteral("the session counts as changed"));
    _sessionFile = _folder.filePath(QStringLiteral("Late Night Mix.tessik"));
    QFile::remove(_sessionFile);
    answerDialog([this](QDialog& dialog) {
        auto* panel = qobject_cast<QFileDialog*>(&dialog);
        if (!panel) return false;
        panel->findChild<QLineEdit*>()->setText(_sessionFile);
        panel->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        return true;
    });
    _app.session.saveAs();
    _guide.check(_guide.waitFor([this] { return !_app.session.hasUnsavedChanges.value(); }),
                 QStringLiteral("the session is saved"));
    _guide.check(_app.session.displayName() == QLatin1String("Late Night Mix"),
                 QStringLiteral("it bears the file's name"));
    compareStores(_sessionFile, QStringLiteral("the file holds every store as it is"));
    _guide.picture(_app.window, QStringLiteral("saved"));
}

void Tour::crashAndRecover() {
    _guide.beginStep(QStringLiteral("A copy of the program crashes, and its work is recovered"));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(crashVariable), _recoveryRoot);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--tour"), _folder.absolutePath()});
    _guide.check(_guide.waitFor([&child] { return child.state() == QProcess::NotRunning; }, 30'000) &&
                     child.exitStatus() == QProcess::CrashExit,
                 QStringLiteral("the copy was killed at work"));
    answerDialog([](QDialog& dialog) {
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == QLatin1String("Recover")) return button->click(), true;
        return false;
    });
    _app.session.offerRecovery();
    const QList<AutomationPass> passes = _app.passes.passes.value();
    _guide.check(passes.size() == 1 && passes[0].name == QLatin1String("Crash") && passes[0].events.size() == 1000,
                 QStringLiteral("the crashed copy's pass is here"));
    _guide.check(_app.channelLabels.labelsByChannelID.value().value(QStringLiteral("input-1")).name ==
                         QLatin1String("Crash") &&
                     _app.snapshots.defaultSnapshot() && _app.locators.end() &&
                     _app.manualSettings.settings(QStringLiteral("input-5")).eqHiMidGain == 1.5 &&
                     _app.masterSection.settings().controlRoomLevel == 2,
                 QStringLiteral("and so are its labels, snapshots, locators, manual settings and master section"));
    _guide.check(_app.session.hasUnsavedChanges.value(), QStringLiteral("what was recovered is still to be saved"));
    _app.session.open(QUrl::fromLocalFile(_sessionFile));
    compareStores(_sessionFile, QStringLiteral("the saved session opens as it was"));
    compareDesk();
}

void Tour::crash() {
    fillSession(QStringLiteral("Crash"));
    _app.session.recoveryTick();
    _app.session.finishSaving();
    std::raise(SIGKILL);
    std::abort();
}

void Tour::compareStores(const QString& file, const QString& statement) {
    const SessionReadResult read = readSession(file, currentSecond());
    _guide.check(read.document && read.document->passes == _app.passes.passes.value() &&
                     read.document->channelLabels == _app.channelLabels.labelsByChannelID.value() &&
                     read.document->masterSection == _app.masterSection.settings() &&
                     read.document->startLocator == _app.locators.start() &&
                     read.document->endLocator == _app.locators.end() &&
                     read.document->defaultSnapshotID == _app.snapshots.defaultSnapshotID.value() &&
                     read.document->manualSettings.value(QStringLiteral("input-5")) ==
                         _app.manualSettings.settings(QStringLiteral("input-5")) &&
                     read.document->snapshots == _app.snapshots.snapshots.value(),
                 statement);
}

void Tour::answerDialog(std::function<bool(QDialog&)> answer) {
    auto* timer = new QTimer(&_app.window);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, answer = std::move(answer)] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog && answer(*dialog)) timer->deleteLater();
    });
    timer->start(20);
}

void Tour::settings() {
    _guide.beginStep(QStringLiteral("The settings"));
    _app.window.openSettings();
    _guide.passTime(100);
    SettingsView* sheet = _app.window.settingsView();
    _guide.check(sheet && sheet->isVisible(), QStringLiteral("the sheet is open"));
    if (!sheet) return;
    _guide.picture(*sheet, QStringLiteral("settings"));
    sheet->close();
    _app.consoleModel.modelSize = ConsoleModel::ModelSize::ch24;
    _guide.picture(_app.window, QStringLiteral("24-channel"));
    _app.consoleModel.modelSize = ConsoleModel::ModelSize::ch32;
}

void Tour::appearances() {
    _guide.beginStep(QStringLiteral("Sizes and themes"));
    for (const AppTheme theme : {AppTheme::dark, AppTheme::light}) {
        _app.theme.setTheme(theme);
        for (const QSize size : {QSize(1366, 768), QSize(1600, 900), QSize(2560, 1440)}) {
            _app.window.resize(size);
            _guide.picture(_app.window,
                           QStringLiteral("%1-%2x%3").arg(rawValue(theme)).arg(size.width()).arg(size.height()));
        }
    }
    _app.theme.setTheme(AppTheme::dark);
}

void Tour::compareDesk() {
    const bool quiet = _guide.waitFor([this] { return !_app.midiOutput.isBusy() && _rig.desk.isQuiet(); });
    _guide.passTime(20);
    _guide.check(quiet && _rig.desk.isQuiet(), QStringLiteral("the cables are quiet"));
    QStringList differences;
    for (const ChannelKind kind : _rig.desk.channels()) {
        const ChannelState& channel = *_app.consoleModel.channelState(kind);
        const int vca = _rig.desk.vca(kind);
        if (vca != channel.faderValue.value())
            differences
                << QStringLiteral("%1: VCA %2, screen %3").arg(kind.id()).arg(vca).arg(channel.faderValue.value());
        if (_app.midiOutput.believedValue(MIDIChannelMapping::faderCC(kind)).value_or(vca) != vca)
            differences << QStringLiteral("%1: VCA %2 is not what is believed").arg(kind.id()).arg(vca);
        if (_rig.desk.switches(kind) != channel.switches())
            differences << QStringLiteral("%1: switches differ").arg(kind.id());
    }
    _guide.check(differences.isEmpty(),
                 differences.isEmpty()
                     ? QStringLiteral("the desk holds what the program believes, on all channels")
                     : QStringLiteral("desk and program differ: ") + differences.join(QLatin1String("; ")));
}

void Tour::clickControl(ControlHost& host, const QString& control) {
    const int index = host.controlIndex(control);
    _guide.check(index >= 0, QStringLiteral("there is a control %1").arg(control));
    if (index < 0) return;
    const QPointF at = QRectF(host.controlRect(index)).center();
    sendMouse(host, QEvent::MouseButtonPress, at, Qt::LeftButton);
    sendMouse(host, QEvent::MouseButtonRelease, at, Qt::NoButton);
}

void Tour::dragFader(ChannelKind kind, int from, int to) {
    ControlHost* strip = _app.window.desk().strip(kind);
    const int fader = strip->controlIndex(QStringLiteral("fader"));
    const QRectF rect = strip->controlRect(fader);
    const double capHeight = Metrics::capHeight;
    const auto place = [&](int value) {
        return QPointF(rect.center().x(), rect.bottom() - capHeight / 2 - (rect.height() - capHeight) * value / 127.0);
    };
    sendMouse(*strip, QEvent::MouseButtonPress, place(from), Qt::LeftButton);
    for (int step = 1; step <= 20; ++step) {
        sendMouse(*strip, QEvent::MouseMove, place(from + (to - from) * step / 20), Qt::LeftButton);
        _guide.passTime(5);
    }
    sendMouse(*strip, QEvent::MouseButtonRelease, place(to), Qt::NoButton);
}

} // namespace tessik
