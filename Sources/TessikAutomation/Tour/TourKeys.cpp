#include "TessikAutomation/Tour/Tour.h"
#include "TessikAutomation/Views/Automation/PassesPopover.h"
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"
#include "TessikAutomation/Views/Transport/LocatorRow.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMessageBox>

namespace tessik {

void Tour::keys() {
    _guide.beginStep(QStringLiteral("Letters arm the modes and capture the locators, which can also be typed"));
    activate();
    _app.window.centralWidget()->setFocus();
    for (const AutomationMode armed : {AutomationMode::write, AutomationMode::off}) {
        pressKey(Qt::Key_W);
        _guide.check(_app.passEngine.mode.value() == armed, QStringLiteral("W: %1").arg(rawValue(armed)));
    }
    pressKey(Qt::Key_C);
    _guide.check(_app.locators.start.value() == _app.mtcClock.currentPosition.value(),
                 QStringLiteral("C captures START"));

    auto* row = _app.window.findChild<LocatorRow*>();
    inBothThemes([this, row](const QString& theme) {
        row->edit();
        auto* entry = row->findChild<EntryField*>();
        typeInto(*entry, QStringLiteral("01:75:00:00"));
        QKeyEvent keep(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(entry, &keep);
        const auto* problem = _app.window.findChild<QLabel*>(QStringLiteral("positionProblem"));
        _guide.check(problem && entry->text() == QLatin1String("01:75:00:00"),
                     QStringLiteral("what is no position stays, with the reason: %1")
                         .arg(problem ? problem->text() : QString()));
        _guide.picture(_app.window, QStringLiteral("locator-typed-") + theme);
        QKeyEvent drop(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(entry, &drop);
        _guide.passTime(20);
    });
    _app.window.centralWidget()->setFocus();
}

void Tour::longLists() {
    _guide.beginStep(QStringLiteral("The lists of a long session, and a file that is damaged"));
    QList<Snapshot> snapshots;
    for (int i = 0; i < 500; ++i)
        snapshots.append(
            _app.snapshotRecall.capture(QStringLiteral("Scene %1").arg(500 - i), currentSecond().addSecs(-600 * i)));
    _app.snapshots.load(snapshots, snapshots[1].id);
    QList<AutomationPass> passes = _app.passes.passes.value();
    for (int i = 0; i < 2000; ++i) {
        AutomationPass pass{.id = QUuid::createUuid(),
                            .name = QStringLiteral("Take %1").arg(2000 - i),
                            .createdAt = currentSecond().addSecs(-600 * i),
                            .frameRate = MTCFrameRate::fps25,
                            .startTimecode = {MTCFrameRate::fps25, 1, i % 60, 0, 0}};
        pass.events.append({i * 7, ChannelKind::input(1), PassEventValue::fader(64)});
        passes.append(pass);
    }
    _app.passes.load(passes);
    inBothThemes([this](const QString& theme) {
        for (auto& [list, name] :
             {std::pair<Popover*, const char*>(_app.window.findChild<SnapshotsPopover*>(), "list-snapshots-"),
              std::pair<Popover*, const char*>(_app.window.findChild<PassesPopover*>(), "list-passes-")}) {
            list->open();
            _guide.passTime(20);
            const qsizetype rows = list->findChildren<RecordRow*>().size();
            _guide.check(rows > 3 && rows < 20, QStringLiteral("%1 rows are made").arg(rows));
            _guide.picture(_app.window, QLatin1String(name) + theme);
            list->close();
        }
    });

    const QString path = _folder.filePath(QStringLiteral("Damaged.tessik"));
    for (const QString& name : {path, path + QLatin1Char('~')}) {
        QFile file(name);
        _guide.check(file.open(QIODevice::WriteOnly) && file.write("{\n\"passes\": [{\"id\": 5,\n}]\n}\n") > 0,
                     QStringLiteral("a damaged file is written"));
    }
    answerDialog([this](QDialog& dialog) {
        auto* alert = qobject_cast<QMessageBox*>(&dialog);
        if (!alert) return false;
        _guide.check(alert->informativeText().contains(QLatin1String("line 3")), alert->informativeText());
        _guide.picture(dialog, QStringLiteral("damaged-file"));
        alert->close();
        return true;
    });
    _app.session.open(QUrl::fromLocalFile(path));
}

} // namespace tessik
