#include "TessikAutomation/Tour/Tour.h"

#include "TessikAutomation/Views/Metrics.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

namespace tessik {

namespace {

constexpr int dialogInterval = 20;

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
    writeDown();
    loseTheCable();
    rollTape();
    writeTake();
    readBack();
    updateTake();
    nullParked();
    lookAtLanes();
    exchangeMIDIFile();
    saveSession();
    zeroConsole();
    undoRecall();
    crashAndRecover();
    reopenReplaced();
    settings();
    welcome();
    manual();
    problems();
    watchMIDI();
    keys();
    appearances();
    longLists();
    return _guide.finish() == 0 ? 0 : 1;
}

void Tour::activate() {
    _app.window.activateWindow();
    _guide.waitFor([this] { return _app.window.isActiveWindow(); }, 1'000); // a window manager may refuse
}

void Tour::pressKey(Qt::Key key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(_app.window.centralWidget(), &press);
}

void Tour::typeInto(QWidget& field, const QString& text) {
    click(field);
    field.setFocus();
    const auto type = [&field](int key, Qt::KeyboardModifiers modifiers, const QString& letter) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, letter);
        QApplication::sendEvent(&field, &press);
    };
    type(Qt::Key_A, Qt::ControlModifier, {});
    for (const QChar letter : text)
        type(0, {}, letter);
}

void Tour::answerDialog(std::function<bool(QDialog&)> answer) {
    auto* timer = new QTimer(&_app.window);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, answer = std::move(answer)] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        timer->stop(); // answering may take a while
        answer(*dialog) ? timer->deleteLater() : timer->start(dialogInterval);
    });
    timer->start(dialogInterval);
}

void Tour::answerFileDialog(const QString& path) {
    answerDialog([path](QDialog& dialog) {
        auto* panel = qobject_cast<QFileDialog*>(&dialog);
        if (!panel) return false;
        panel->findChild<QLineEdit*>()->setText(path);
        const bool saves = panel->acceptMode() == QFileDialog::AcceptSave;
        panel->findChild<QDialogButtonBox*>()->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open)->click();
        return true;
    });
}

void Tour::compareDesk() {
    // What one end has just sent is not on a cable yet: everything must be at rest again after what is in transit has
    // arrived.
    int timesAtRest = 0;
    const bool quiet = _guide.waitFor([&] {
        _rig.service.waitUntilDelivered();
        QCoreApplication::processEvents();
        timesAtRest = _app.desk.output.isBusy() || !_rig.desk.isQuiet() ? 0 : timesAtRest + 1;
        return timesAtRest == 3;
    });
    _guide.check(quiet, QStringLiteral("the cables are quiet"));
    QStringList differences;
    for (const ChannelKind kind : _rig.desk.channels()) {
        const ChannelState& channel = *_app.desk.model.channelState(kind);
        const int vca = _rig.desk.vca(kind);
        if (vca != channel.faderValue.value())
            differences
                << QStringLiteral("%1: VCA %2, screen %3").arg(kind.id()).arg(vca).arg(channel.faderValue.value());
        if (_app.desk.output.believedValue(MIDIChannelMapping::faderCC(kind)).value_or(vca) != vca)
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
    click(host, QRectF(host.controlRect(index)).center());
}

void Tour::click(QWidget& widget, QPointF at) {
    sendMouse(widget, QEvent::MouseButtonPress, at, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, at, Qt::NoButton);
}

void Tour::dragFader(ChannelKind kind, int from, int to) {
    ControlHost* strip = _app.window.desk().strip(kind);
    const int fader = strip->controlIndex(QStringLiteral("fader"));
    const QRectF rect = strip->controlRect(fader);
    const double capHeight = Metrics::capHeight;
    const auto place = [&](int value) {
        return QPointF(rect.center().x(), rect.bottom() - capHeight / 2 - (rect.height() - capHeight) * value / 127.0);
    };
    drag(*strip, place(from), place(to));
}

void Tour::drag(ControlHost& host, QPointF from, QPointF to) {
    sendMouse(host, QEvent::MouseButtonPress, from, Qt::LeftButton);
    for (int step = 1; step <= 20; ++step) {
        sendMouse(host, QEvent::MouseMove, from + (to - from) * step / 20, Qt::LeftButton);
        _guide.passTime(5);
    }
    sendMouse(host, QEvent::MouseButtonRelease, to, Qt::NoButton);
}

} // namespace tessik
