#include "TessikAutomation/Tour/Tour.h"
#include "TessikAutomation/Views/Automation/PassLanesView.h"
#include "TessikAutomation/Views/Automation/PassesPopover.h"
#include "TessikAutomation/Views/Window/HeaderTitle.h"
#include "TessikAutomation/Views/Window/ZeroConsoleMenu.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QUndoStack>

#include <cmath>

namespace tessik {

namespace {

constexpr std::int64_t takeStart = 90'000; ///< 01:00:00:00
constexpr double takeLength = 104;
constexpr double holdStart = 46, holdEnd = 60; ///< all hands rest: time for a picture
/// A move may be this much earlier or later than the hand's: it plays on its frame, and the machine may be busy.
constexpr double tolerance = 2;

/// If the machine kept the program from running for longer, the desk's behaviour proves nothing: it is played again.
constexpr Uptime longestAbsence = std::chrono::milliseconds(60);

/// A hand that goes from one position to another, rests, and moves on to a third.
struct Ride {
    ChannelKind kind;
    int from, middle, to;

    int at(double t) const {
        const auto glide = [t](double begin, double end, int a, int b) {
            const double share = std::clamp((t - begin) / (end - begin), 0.0, 1.0);
            return a + int(std::lround((b - a) * (1 - std::cos(share * M_PI)) / 2));
        };
        return t < holdStart ? glide(20, holdStart, from, middle) : glide(holdEnd, 90, middle, to);
    }
};
const Ride rides[]{{ChannelKind::input(2), 60, 105, 40},
                   {ChannelKind::input(4), 90, 30, 75},
                   {ChannelKind::group(1), 100, 64, 112},
                   {ChannelKind::stereo(), 106, 80, 106}};
const Ride& updatedRide = rides[1];
constexpr int rideUp = 20; ///< what UPDATE adds to it

/// A mute pressed at one frame and again at another.
struct Press {
    ChannelKind kind;
    double on, off;
};
const Press presses[]{{ChannelKind::input(5), 30, 72}, {ChannelKind::group(2), 42, 86}};

std::vector<int> controllers() {
    std::vector<int> all;
    for (const Ride& ride : rides)
        all.push_back(MIDIChannelMapping::faderCC(ride.kind));
    for (const Press& press : presses)
        all.push_back(MIDIChannelMapping::switchCC(press.kind));
    return all;
}

QString laneName(int cc) {
    const auto fader = MIDIChannelMapping::channelKindForFaderCC(cc);
    return fader ? QStringLiteral("fader ") + fader->displayName()
                 : QStringLiteral("switches ") + MIDIChannelMapping::channelKindForSwitchCC(cc)->displayName();
}

/// The events of a pass on one lane.
QList<TimedEvent> lane(const AutomationPass& pass, int cc) {
    QList<TimedEvent> found;
    for (const TimedEvent& event : pass.events)
        if (const auto lane = LaneEvent::of(event); lane && lane->cc == cc) found.append(event);
    return found;
}

/// A pass's value for every fader at a frame, read from its events one by one.
std::map<int, int> fadersAt(const AutomationPass& pass, std::int64_t frame) {
    std::map<int, int> values;
    for (const ChannelSnapshot& channel : *pass.initialState)
        values[MIDIChannelMapping::faderCC(channel.kind)] = channel.faderPosition();
    for (const TimedEvent& event : pass.events)
        if (event.value.kind() == PassEventValue::Case::fader &&
            pass.startTimecode.totalFrames() + event.frameOffset <= frame)
            values[MIDIChannelMapping::faderCC(event.kind)] = int(event.value.fader());
    return values;
}

} // namespace

void Tour::rollTape() {
    _guide.beginStep(QStringLiteral("Locate the recorder, play it, stop it"));
    const TimecodePosition goal{MTCFrameRate::fps25, 1, 7, 42, 0};
    locate(goal.totalFrames());
    _guide.check(!_app.mtcClock.isRunning.value(), QStringLiteral("a located machine does not roll"));
    activate();
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

void Tour::locate(std::int64_t frame) {
    const TimecodePosition goal = TimecodePosition::fromTotalFrames(MTCFrameRate::fps25, frame);
    _app.transport.locate(goal);
    _guide.check(_guide.waitFor([&] { return _app.mtcClock.currentPosition.value() == goal; }),
                 QStringLiteral("the counter stands at %1").arg(goal.displayString()));
}

Uptime Tour::roll(std::int64_t frame, double frames, const std::function<void(double t)>& meanwhile) {
    locate(frame);
    pressKey(Qt::Key_Space);
    Uptime longestAbsence{}, lastLook = distantPast;
    const bool arrived = _guide.waitFor(
        [&] {
            if (lastLook != distantPast)
                longestAbsence = std::max(longestAbsence, UptimeClock::system().now() - lastLook);
            const double t = _rig.recorder.truePosition(UptimeClock::system().now()) - double(frame);
            meanwhile(t);
            lastLook = UptimeClock::system().now();
            return t >= frames;
        },
        20'000);
    pressKey(Qt::Key_Space);
    _guide.check(arrived && _guide.waitFor([this] {
        return !_app.mtcClock.isRunning.value() && !_app.passEngine.isRolling.value();
    }),
                 QStringLiteral("Space played and stopped the tape"));
    return longestAbsence;
}

QAbstractButton& Tour::automationKey(const char* legend) {
    return *_app.window.findChild<QAbstractButton*>(QLatin1String(legend));
}

void Tour::saveTake(const QString& name) {
    auto* popover = _app.window.findChild<PassesPopover*>();
    const bool isAsked = _guide.waitFor([popover] { return popover->isVisible(); });
    auto* field = popover->findChild<QLineEdit*>(QStringLiteral("name"));
    const auto& take = _app.passEngine.recordingPass.value();
    _guide.check(isAsked && take && field->isVisible() && field->text() == take->name,
                 QStringLiteral("the popover is open and proposes “%1”").arg(field->text()));
    if (!take) return;
    const qsizetype events = take->events.size();
    typeInto(*field, name);
    _guide.picture(_app.window, QStringLiteral("save-pass"));
    click(*popover->findChild<QAbstractButton*>(QStringLiteral("save")));
    const auto& selected = _app.passEngine.selectedPass.value();
    _guide.check(!_app.passEngine.recordingPass.value() && selected && selected->name == name &&
                     _app.passes.passes.value().contains(*selected),
                 QStringLiteral("“%1” is in the list with %2 events, and selected").arg(name).arg(events));
    _guide.passTime(50);
    popover->close();
}

void Tour::compareCurves(const TapeCurves& played, const TapeCurves& expected, const QString& statement) {
    int frames = 0, worst = 0, worstInStep = 0;
    QString where = QStringLiteral("nowhere");
    for (const auto& [cc, curve] : expected)
        for (double t = 15; t < 100; ++t, ++frames) {
            const double frame = double(takeStart) + t;
            const int value = played.at(cc).at(frame);
            worstInStep = std::max(worstInStep, std::abs(value - curve.at(frame)));
            const int off = curve.distance(value, frame - tolerance, frame + tolerance);
            if (off > worst) where = QStringLiteral("%1, frame %2").arg(laneName(cc)).arg(t);
            worst = std::max(worst, off);
        }
    _guide.check(worst == 0,
                 QStringLiteral("%1 on all of %2 frames of %3 lanes, within %4 frames (worst: %5 steps off, "
                                "%6; compared without tolerance: %7 steps)")
                     .arg(statement)
                     .arg(frames)
                     .arg(expected.size())
                     .arg(tolerance)
                     .arg(worst)
                     .arg(where)
                     .arg(worstInStep));
}

void Tour::writeTake() {
    _guide.beginStep(QStringLiteral("WRITE: hands ride four faders and press two mutes"));
    for (const Ride& ride : rides)
        _rig.desk.moveFader(ride.kind, ride.from);
    compareDesk();
    click(automationKey("WRITE"));
    _guide.check(_app.passEngine.mode.value() == AutomationMode::write, QStringLiteral("WRITE is armed"));

    const DeskWatch watch(_rig, controllers());
    bool hasPicture = false;
    roll(takeStart, takeLength, [&](double t) {
        if (t < 15) return;
        for (const Ride& ride : rides)
            _rig.desk.moveFader(ride.kind, ride.at(t));
        for (const Press& press : presses) {
            ChannelSwitches switches = _rig.desk.switches(press.kind);
            switches.chanMuted = t >= press.on && t < press.off;
            _rig.desk.setSwitches(press.kind, switches);
        }
        if (t < holdStart + 2 || std::exchange(hasPicture, true)) return;
        _guide.picture(_app.window, QStringLiteral("write"));
    });
    _hands = watch.curves();
    _guide.check(_app.passEngine.mode.value() == AutomationMode::read,
                 QStringLiteral("at the stop WRITE has become READ"));
    compareDesk();
    answerDialog([this](QDialog& dialog) {
        const auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("name"));
        const auto& take = _app.passEngine.recordingPass.value();
        _guide.check(field && take && field->text() == take->name, QStringLiteral("Quit asks for the take's name"));
        _guide.picture(dialog, QStringLiteral("quit-with-take"));
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == QLatin1String("Cancel")) button->click();
        return true;
    });
    _app.quit();
    _guide.check(_app.window.isVisible(), QStringLiteral("Cancel stays, with the take"));
    saveTake(QStringLiteral("Ride"));
}

void Tour::playAndCompare(const TapeCurves& expected, const QString& statement) {
    TapeCurves played;
    bool hasPicture = false;
    Uptime absence = distantPast;
    for (int attempt = 0; attempt < 3 && (attempt == 0 || absence > longestAbsence); ++attempt) {
        const DeskWatch watch(_rig, controllers());
        absence = roll(takeStart, takeLength, [&](double t) {
            if (t < holdStart + 2 || std::exchange(hasPicture, true)) return;
            _guide.picture(_app.window, QStringLiteral("read"));
        });
        played = watch.curves();
    }
    compareCurves(played, expected, statement);
    compareDesk();
}

void Tour::readBack() {
    _guide.beginStep(QStringLiteral("READ: the desk does what the hands did"));
    playAndCompare(_hands, QStringLiteral("the desk's VCAs and mutes follow the hands' curves"));
}

void Tour::updateTake() {
    _guide.beginStep(QStringLiteral("UPDATE: a hand rides one fader on top of the pass"));
    const AutomationPass before = *_app.passEngine.selectedPass.value();
    click(automationKey("UPDATE"));
    const int rest = _rig.desk.physicalFader(updatedRide.kind);
    TapeCurve hand;
    hand.add(0, rest);
    bool hasPicture = false;
    roll(takeStart, takeLength, [&](double t) {
        const int to = rest + int(std::lround(std::clamp((t - 30) / 12, 0.0, 1.0) * rideUp));
        if (to != _rig.desk.physicalFader(updatedRide.kind)) {
            _rig.desk.moveFader(updatedRide.kind, to);
            hand.add(double(takeStart) + t, to);
        }
        if (t < holdStart + 2 || std::exchange(hasPicture, true)) return;
        _guide.picture(_app.window, QStringLiteral("update"));
    });
    auditionTake(updatedRide.middle, updatedRide.middle + rideUp);
    _guide.beginStep(QStringLiteral("The take is kept"));
    saveTake(QStringLiteral("Ride, input 4 up"));
    const AutomationPass after = *_app.passEngine.selectedPass.value();
    const int updated = MIDIChannelMapping::faderCC(updatedRide.kind);
    QStringList changed;
    for (int cc = 0; cc < MIDIChannelMapping::controllerCount; ++cc)
        if (lane(before, cc) != lane(after, cc)) changed << laneName(cc);
    _guide.check(changed == QStringList{laneName(updated)},
                 QStringLiteral("only %1 differs from the pass before").arg(changed.join(QStringLiteral(", "))));
    _guide.check(after.id != before.id && after.initialState == before.initialState &&
                     _app.passes.passes.value().contains(before),
                 QStringLiteral("the pass before is still there, as it was"));

    _guide.beginStep(QStringLiteral("READ the updated pass"));
    TapeCurves expected = _hands;
    TapeCurve& lifted = expected[updated] = {};
    for (double t = 0; t < 104; t += 0.05) {
        const double frame = double(takeStart) + t;
        lifted.add(frame, std::clamp(_hands.at(updated).at(frame) + hand.at(frame) - rest, 0, 127));
    }
    playAndCompare(expected, QStringLiteral("the desk follows the hands and the ride on top"));
}

void Tour::auditionTake(int automation, int ridden) {
    _guide.beginStep(QStringLiteral("The take plays before it is kept, and the pass before to compare"));
    auto* popover = _app.window.findChild<PassesPopover*>();
    const auto header = [this] { return _app.window.findChild<HeaderTitle*>()->accessibleName(); };
    const auto listen = [this](int level, const QString& what) {
        int heard = -1;
        Uptime absence = distantPast;
        for (int attempt = 0; attempt < 3 && (attempt == 0 || absence > longestAbsence); ++attempt)
            absence =
                roll(takeStart + std::int64_t(holdStart), 8, [&](double) { heard = _rig.desk.vca(updatedRide.kind); });
        _guide.check(heard == level,
                     QStringLiteral("READ plays %1: input 4 at %2 of %3").arg(what).arg(heard).arg(level));
    };
    const auto choose = [popover](const char* name) {
        return popover->findChild<QAbstractButton*>(QLatin1String(name));
    };
    _guide.check(_guide.waitFor([popover] { return popover->isVisible(); }) &&
                     header().endsWith(QLatin1String(", Take, not saved")),
                 QStringLiteral("the header says “%1”").arg(header()));
    listen(ridden, QStringLiteral("the take"));
    inBothThemes([this](const QString& theme) { _guide.picture(_app.window, QStringLiteral("take-") + theme); });
    click(*choose("playBefore"));
    listen(automation, QStringLiteral("the pass before"));
    _guide.picture(_app.window, QStringLiteral("compared"));
    click(*choose("playTake"));
    listen(ridden, QStringLiteral("the take again"));
    click(*choose("drop"));
    _guide.check(!_app.passEngine.recordingPass.value(), QStringLiteral("Discard drops it: “%1”").arg(header()));
    listen(automation, QStringLiteral("the pass before"));
    _app.window.history().undo();
    _guide.check(header().endsWith(QLatin1String(", Take, not saved")), QStringLiteral("Undo brings it back"));
    listen(ridden, QStringLiteral("the take"));
    compareDesk();
}

void Tour::nullParked() {
    _guide.beginStep(QStringLiteral("NULL with the tape parked: arrows lead the hands to the automation"));
    const std::int64_t parked = takeStart + 52;
    locate(parked);
    click(automationKey("NULL"));
    const std::map<int, int> automation = fadersAt(*_app.passEngine.selectedPass.value(), parked);
    const auto checkArrows = [&](const QString& statement) {
        QStringList wrong;
        int led = 0;
        for (const ChannelKind kind : _rig.desk.channels()) {
            const ChannelState& channel = *_app.desk.model.channelState(kind);
            const int target = automation.at(MIDIChannelMapping::faderCC(kind));
            const bool isRidden =
                std::any_of(std::begin(rides), std::end(rides), [&](const Ride& ride) { return ride.kind == kind; });
            const int fader = isRidden ? _rig.desk.physicalFader(kind) : channel.faderValue.value();
            using Match = ChannelState::NullMatch;
            // The rides leave each fader either clearly off or on its target.
            const Match right = fader < target ? Match::needsUp : fader > target ? Match::needsDown : Match::matched;
            led += right != Match::matched;
            if (channel.nullTarget.value() != target || channel.faderValue.value() != fader ||
                channel.nullMatch() != right)
                wrong << QStringLiteral("%1 (fader %2, target %3 for %4)")
                             .arg(kind.displayName())
                             .arg(channel.faderValue.value())
                             .arg(channel.nullTarget.value().value_or(-1))
                             .arg(target);
        }
        _guide.check(wrong.isEmpty(), statement.arg(led) + wrong.join(QStringLiteral("; ")));
    };
    _guide.passTime(50);
    checkArrows(QStringLiteral("targets and arrows are right on all channels, %1 of them to be moved "));
    _guide.picture(_app.window, QStringLiteral("null-parked"));
    for (const Ride& ride : rides)
        _rig.desk.moveFader(ride.kind, automation.at(MIDIChannelMapping::faderCC(ride.kind)));
    _guide.passTime(100);
    checkArrows(QStringLiteral("the hands have followed the arrows: %1 to be moved "));
    click(automationKey("NULL"));
    click(automationKey("READ"));
    _guide.check(_app.passEngine.mode.value() == AutomationMode::off && !_app.passEngine.nullEnabled.value(),
                 QStringLiteral("NULL and READ are off"));
    compareDesk();
}

void Tour::chooseFromPassMenu(const QString& text) {
    auto* row = _app.window.findChild<PassesPopover*>()->findChild<RecordRow*>();
    QContextMenuEvent asked(QContextMenuEvent::Mouse, row->rect().center(), row->mapToGlobal(row->rect().center()));
    QApplication::sendEvent(row, &asked);
    auto* menu = row->findChild<QMenu*>();
    _guide.picture(*menu, QStringLiteral("pass-menu"));
    menu->close();
    for (QAction* action : menu->actions())
        if (action->text() == text) return action->trigger();
    _guide.check(false, QStringLiteral("the menu has “%1”").arg(text));
}

void Tour::lookAtLanes() {
    _guide.beginStep(QStringLiteral("The lanes of the pass"));
    _app.channelLabels.update({QStringLiteral("Lead Vox"), QStringLiteral("4EA8CB")}, ChannelKind::input(4).id());
    _app.channelLabels.update({QStringLiteral("Drums"), QStringLiteral("E0553F")}, ChannelKind::group(1).id());
    auto* popover = _app.window.findChild<PassesPopover*>();
    popover->open();
    click(*popover->findChild<QAbstractButton*>(QStringLiteral("lanes")));
    popover->close();
    auto* lanes = _app.window.findChild<PassLanesView*>();
    _guide.check(lanes && lanes->isVisible() && lanes->windowTitle() == _app.passes.passes.value().constFirst().name,
                 QStringLiteral("a window shows the lanes of the pass"));
    if (!lanes) return;
    for (const AppTheme theme : {AppTheme::light, AppTheme::dark}) {
        _app.theme.setTheme(theme);
        _guide.picture(*lanes, QStringLiteral("lanes-") + rawValue(theme));
    }
    const QPoint at(int(lanes->xOf(40)), lanes->rulerRect().center().y());
    click(*lanes->viewport(), at);
    _guide.check(_guide.waitFor([&] {
        return lanes->tapeOffset() &&
               std::abs(lanes->xOf(*lanes->tapeOffset()) - at.x()) <= 1 / lanes->timeline().framesPerPixel;
    }),
                 QStringLiteral("a click on the ruler locates the tape, and the line goes there"));
    const double before = lanes->timeline().framesPerPixel;
    const double held = lanes->xOf(40);
    for (int i = 0; i < 5; ++i)
        lanes->zoom(1.5, held - lanes->rulerRect().x());
    _guide.check(lanes->timeline().framesPerPixel < before / 5 && std::abs(lanes->xOf(40) - held) < 0.01,
                 QStringLiteral("the zoom leaves what is under the pointer where it is"));
    _guide.picture(*lanes, QStringLiteral("lanes-close"));
    lanes->close();
}

void Tour::exchangeMIDIFile() {
    _guide.beginStep(QStringLiteral("A pass goes to a MIDI file and comes back"));
    auto* popover = _app.window.findChild<PassesPopover*>();
    popover->open();
    const AutomationPass pass = _app.passes.passes.value().constFirst();
    const QString path = _folder.filePath(QStringLiteral("Ride.mid"));
    QFile::remove(path);
    answerFileDialog(path);
    chooseFromPassMenu(QStringLiteral("Export as MIDI File…"));
    _guide.check(_guide.waitFor([&path] { return QFile::exists(path); }),
                 QStringLiteral("“%1” is in a file of %2 bytes").arg(pass.name).arg(QFileInfo(path).size()));
    answerFileDialog(path);
    click(*popover->findChild<QAbstractButton*>(QStringLiteral("import")));
    const auto imported = [this, &pass] {
        const QList<AutomationPass> all = _app.passes.passes.value();
        return std::find_if(all.begin(), all.end(), [&pass](const AutomationPass& each) {
                   return each.id != pass.id && each.name == pass.name && each.events == pass.events &&
                          each.initialState == pass.initialState && each.startTimecode == pass.startTimecode;
               }) != all.end();
    };
    _guide.check(_guide.waitFor(imported), QStringLiteral("the pass from the file is the same, event for event"));
    _guide.picture(_app.window, QStringLiteral("imported"));
    popover->close();
}

void Tour::zeroConsole() {
    _guide.beginStep(QStringLiteral("Zero Console, sent to the desk, and the saved session comes back"));
    auto* menu = _app.window.findChild<ZeroConsoleMenu*>();
    for (QAction* action : menu->actions())
        if (action->text() == texts(ResetTier::channelsAndMasterSendToConsole).menuTitle) action->trigger();
    _guide.picture(*menu->confirmation(), QStringLiteral("zero-question"));
    for (QAbstractButton* button : menu->confirmation()->buttons())
        if (button->text() == QLatin1String("Zero It")) click(*button);
    compareDesk();
    const std::vector<ChannelKind> channels = _rig.desk.channels();
    _guide.check(std::all_of(channels.begin(), channels.end(),
                             [this](ChannelKind kind) {
                                 return _rig.desk.vca(kind) == 0 && _rig.desk.switches(kind) == ChannelSwitches();
                             }),
                 QStringLiteral("every fader of the desk is down, every switch off"));
    _guide.picture(_app.window, QStringLiteral("zeroed"));
    _app.session.open(QUrl::fromLocalFile(_sessionFile));
    compareStores(_sessionFile, QStringLiteral("the session opens with its passes, as it was saved"));
    compareDesk();
    _guide.picture(_app.window, QStringLiteral("reopened"));
}

} // namespace tessik
