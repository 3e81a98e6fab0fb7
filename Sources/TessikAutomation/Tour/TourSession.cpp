#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Tour/Tour.h"
#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"

#include <QDialog>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QUndoStack>

#include <csignal>

namespace tessik {

void Tour::fillSession(const QString& name) {
    _app.snapshots.save(_app.snapshotRecall.capture(name, currentSecond()));
    _app.snapshots.setDefault(_app.snapshots.snapshots.value().constLast().id);
    _app.channelLabels.update({name, QStringLiteral("E0553F")}, QStringLiteral("input-31"));
    ManualChannelSettings manual = _app.manualSettings.settings(QStringLiteral("input-5"));
    manual.eqHiMidGain += 1.5;
    _app.manualSettings.store(QStringLiteral("input-5"), manual);
    MasterSectionSettings master = _app.masterSection.settings.value();
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
    answerFileDialog(_sessionFile);
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
    _guide.check(_app.channelLabels.labelsByChannelID.value().value(QStringLiteral("input-31")).name ==
                         QLatin1String("Crash") &&
                     _app.snapshots.defaultSnapshot() && _app.locators.end.value() &&
                     _app.manualSettings.settings(QStringLiteral("input-5")).eqHiMidGain == 1.5 &&
                     _app.masterSection.settings.value().controlRoomLevel == 2,
                 QStringLiteral("and so are its labels, snapshots, locators, manual settings and master section"));
    _guide.check(_app.session.hasUnsavedChanges.value(), QStringLiteral("what was recovered is still to be saved"));
    _app.session.open(QUrl::fromLocalFile(_sessionFile));
    compareStores(_sessionFile, QStringLiteral("the saved session opens as it was"));
    compareDesk();
}

void Tour::reopenReplaced() {
    _guide.beginStep(QStringLiteral("A session that was replaced before it was saved is had back"));
    const QString channel = QStringLiteral("input-30");
    _app.channelLabels.update({QStringLiteral("Brass"), QStringLiteral("E0553F")}, channel);
    _app.session.newSession();
    _guide.check(_app.channelLabels.labelsByChannelID.value().isEmpty() && !_app.session.hasUnsavedChanges.value(),
                 QStringLiteral("New Session begins with nothing, without a question"));
    for (QMenu* menu : _app.window.findChildren<QMenu*>()) {
        if (menu->title() != QLatin1String("Re&placed Sessions")) continue;
        menu->popup(_app.window.mapToGlobal(QPoint(40, 40)));
        _guide.picture(*menu, QStringLiteral("replaced-sessions"));
        menu->hide();
        if (!menu->actions().isEmpty()) menu->actions().constFirst()->trigger();
    }
    _guide.check(_app.channelLabels.labelsByChannelID.value().value(channel).name == QLatin1String("Brass") &&
                     _app.session.hasUnsavedChanges.value() &&
                     _app.session.displayName() == QLatin1String("Late Night Mix"),
                 QStringLiteral("it comes back from the File menu, still to be saved, and knows its file"));
    _app.session.open(QUrl::fromLocalFile(_sessionFile));
    compareDesk();
}

void Tour::undoRecall() {
    _guide.beginStep(QStringLiteral("A snapshot is recalled by mistake, and that is taken back, on the desk too"));
    const ChannelKind moved = ChannelKind::input(8);
    const int before = (_rig.desk.vca(moved) + 40) % 128;
    _rig.desk.moveFader(moved, before);
    compareDesk();
    auto* popover = _app.window.findChild<SnapshotsPopover*>();
    popover->open();
    click(*popover->findChild<QAbstractButton*>(QStringLiteral("recall")));
    compareDesk();
    _guide.check(_rig.desk.vca(moved) != before, QStringLiteral("the recall has moved the desk"));
    _guide.picture(_app.window, QStringLiteral("recalled"));
    popover->close();
    _app.window.history().undo();
    compareDesk();
    _guide.check(_rig.desk.vca(moved) == before, QStringLiteral("undo has put it back"));
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
                     read.document->masterSection == _app.masterSection.settings.value() &&
                     read.document->startLocator == _app.locators.start.value() &&
                     read.document->endLocator == _app.locators.end.value() &&
                     read.document->defaultSnapshotID == _app.snapshots.defaultSnapshotID.value() &&
                     read.document->manualSettings.value(QStringLiteral("input-5")) ==
                         _app.manualSettings.settings(QStringLiteral("input-5")) &&
                     read.document->snapshots == _app.snapshots.snapshots.value(),
                 statement);
}

} // namespace tessik
