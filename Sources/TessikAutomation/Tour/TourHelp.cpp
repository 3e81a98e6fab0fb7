#include "TessikAutomation/Tour/Tour.h"
#include "TessikAutomation/Views/Help/HelpMenu.h"
#include "TessikAutomation/Views/Monitor/MIDIMonitorView.h"
#include "TessikAutomation/Views/Welcome/WelcomeView.h"
#include "TessikAutomation/Views/Window/ActivityLamp.h"
#include "TessikAutomation/Views/Window/ProblemsPopover.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace tessik {

void Tour::inBothThemes(const std::function<void(const QString& theme)>& show) {
    for (const AppTheme theme : {AppTheme::light, AppTheme::dark}) {
        _app.theme.setTheme(theme);
        show(rawValue(theme));
    }
}

void Tour::welcome() {
    _guide.beginStep(QStringLiteral("The first run"));
    inBothThemes([this](const QString& theme) {
        SavedSettings::remove(SavedSettings::Key::welcomeDismissed);
        _app.welcome();
        auto* card = qobject_cast<WelcomeView*>(QApplication::activeModalWidget());
        _guide.check(card, QStringLiteral("the card is there"));
        if (!card) return;
        _guide.picture(*card, QStringLiteral("welcome-") + theme);
        card->reject();
    });
    _app.welcome();
    _guide.check(!QApplication::activeModalWidget(), QStringLiteral("sent away, it does not come back"));
}

void Tour::manual() {
    _guide.beginStep(QStringLiteral("The manual"));
    auto* menu = _app.window.findChild<HelpMenu*>();
    inBothThemes([this, menu](const QString& theme) {
        menu->openManual(QStringLiteral("Setting Up MIDI"));
        _guide.picture(*menu->view(), QStringLiteral("manual-table-") + theme);
        menu->view()->setQuery(QStringLiteral("timecode"));
        _guide.check(menu->view()->visibleTitles().size() > 3, QStringLiteral("the search finds several chapters"));
        _guide.picture(*menu->view(), QStringLiteral("manual-search-") + theme);
        menu->view()->close();
        _guide.passTime(20);
    });
    activate();
    pressKey(Qt::Key_F1);
    _guide.check(menu->view() && menu->view()->shownTitle() == QLatin1String("The Main Window"),
                 QStringLiteral("F1 opens the chapter of where the user is"));
    if (menu->view()) menu->view()->close();
    _guide.passTime(20);
    activate();
}

void Tour::watchMIDI() {
    _guide.beginStep(QStringLiteral("What is on the cables"));
    _rig.recorder.play();
    _rig.desk.moveFader(ChannelKind::input(12), 88);
    _app.desk.editor.setFader(*_app.desk.model.channelState(ChannelKind::group(2)), 40);
    _guide.passTime(700);
    _app.transport.send(MMCCommand::stop);
    _guide.passTime(100);
    for (QAction* action : _app.viewMenu().actions())
        if (action->text().remove(u'&') == QLatin1String("MIDI Monitor")) action->trigger();
    auto* monitor = _app.window.findChild<MIDIMonitorView*>();
    _guide.check(monitor, QStringLiteral("the MIDI Monitor opens"));
    if (!monitor) return;
    monitor->copy();
    const QString passed = QApplication::clipboard()->text();
    for (const char* line : {"MIDI In\tFader 12 → −6.1 dB\tB0 0B 58", "MIDI Out\tFader G2 → −25.0 dB\tB0 21 28",
                             "MTC Source\tMTC ", "Send To\tMMC STOP\tF0 7F 7F 06 01 F7"})
        _guide.check(passed.contains(QString::fromUtf8(line)),
                     QStringLiteral("it lists %1").arg(QString::fromUtf8(line)));
    inBothThemes([&](const QString& theme) { _guide.picture(*monitor, QStringLiteral("midi-monitor-") + theme); });
    monitor->close();
    _guide.passTime(20);
    activate();
}

void Tour::problems() {
    _guide.beginStep(QStringLiteral("What is wrong, and what to do"));
    SymbolButton& key = _app.window.problemsKey();
    _guide.check(key.isHidden(), QStringLiteral("nothing is wrong, so nothing is said"));
    const auto drag = [this] {
        ChannelState& in1 = *_app.desk.model.inputs().front();
        _app.desk.editor.setFader(in1, (in1.faderValue.value() + 1) % 100);
    };
    _rig.desk.setEchoing(true);
    _guide.check(_guide.waitFor([&] {
        drag();
        return key.isVisible();
    }),
                 QStringLiteral("a desk that echoes is a loop"));
    _rig.desk.setEchoing(false);
    drag();
    _guide.check(_guide.waitFor([&key] { return key.isHidden(); }), QStringLiteral("an echo failed to come"));
    const QString port = SimulatedConsole::portName();
    MIDIInputConnection& input = _app.desk.input.connection;
    _rig.service.cut(port);
    _guide.check(_guide.waitFor([&] { return input.dataLostCount.value() > 0 && key.isVisible(); }),
                 QStringLiteral("what another program disconnected is put back once"));
    _rig.service.cut(port);
    _guide.check(_guide.waitFor([&key] { return key.accessibleName().startsWith(u'3'); }),
                 QStringLiteral("and then both ports say so, and that messages were lost"));
    inBothThemes([this](const QString& theme) { _guide.picture(_app.window, QStringLiteral("cut-") + theme); });
    _rig.service.unplug(port);
    _guide.check(_guide.waitFor([&key] { return key.isVisible() && key.accessibleName().startsWith(u'3'); }),
                 QStringLiteral("both ports are missing and messages were lost: %1").arg(key.accessibleName()));
    key.click();
    inBothThemes([this](const QString& theme) { _guide.picture(_app.window, QStringLiteral("problems-") + theme); });
    _app.window.resize(1366, 768);
    _guide.picture(_app.window, QStringLiteral("problems-1366x768"));
    _app.window.resize(1600, 900);
    _rig.service.plug(port);
    _guide.check(_guide.waitFor([&key] { return key.accessibleName().startsWith(u'1'); }),
                 QStringLiteral("the ports are back: %1").arg(key.accessibleName()));
    _guide.passTime(600); // anything sooner belongs to an earlier scene
    _rig.desk.recallScene(1);
    auto* in = _app.window.findChild<ActivityLamp*>(); // the first
    _guide.check(_guide.waitFor([in] { return in->isLit(); }), QStringLiteral("the lamp of MIDI In lights"));
    _guide.picture(*in->parentWidget(), QStringLiteral("lamps"));
    _guide.check(_guide.waitFor([&key] { return key.isHidden(); }),
                 QStringLiteral("the desk told everything, and the list is gone"));
    compareDesk();
}

} // namespace tessik
