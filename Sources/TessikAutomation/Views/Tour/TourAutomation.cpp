#include "TessikAutomation/Views/Tour/Tour.h"

#include <QApplication>

namespace tessik {

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

} // namespace tessik
