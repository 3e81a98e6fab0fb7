#include "TessikAutomation/Views/Tour/Tour.h"

namespace tessik {

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

} // namespace tessik
