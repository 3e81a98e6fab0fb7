#include "TessikAutomation/Tour/Tour.h"
#include "TessikAutomation/Views/Desk/ManualControls.h"
#include "TessikAutomation/Views/Desk/ScribbleEditor.h"
#include "TessikAutomation/Views/RigPane.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

#include <random>

namespace tessik {

void Tour::connect() {
    _guide.beginStep(QStringLiteral("Connect the desk"));
    _guide.check(_app.desk.output.port.statusText.value() == QLatin1String("Not connected"),
                 QStringLiteral("nothing is connected at first"));
    _app.connectToRig();
    _guide.check(_app.desk.input.connection.statusText.value() == QLatin1String("Connected: Rig Console"),
                 QStringLiteral("MIDI In: ") + _app.desk.input.connection.statusText.value());
    _guide.check(_app.desk.output.port.statusText.value() == QLatin1String("Output: Rig Console"),
                 QStringLiteral("MIDI Out: ") + _app.desk.output.port.statusText.value());
}

void Tour::hearScene() {
    _guide.beginStep(QStringLiteral("Recall a scene on the desk, so that it tells what it holds"));
    _rig.desk.recallScene(0);
    _guide.check(_guide.waitFor([this] { return _app.desk.model.messageCount.value() == 2 * channelCount; }),
                 QStringLiteral("all %1 messages of the scene arrived").arg(2 * channelCount));
    compareDesk();
    int matched = 0;
    for (const ChannelState* channel : _app.desk.model.allVisibleChannels())
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
    _guide.passTime(600); // anything sooner still belongs to the scene
    move(2, -30);
    move(4, 12);
    move(7, -18);
    compareDesk();
    const auto match = [this](int input) {
        return _app.desk.model.channelState(ChannelKind::input(input))->nullMatch();
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

namespace {

struct Named {
    const char* name;
    int swatch;
};
constexpr int leadSwatch = 7;
constexpr Named inputNames[]{{"Kick In", 1}, {"Kick Out", 1}, {"Snare", 1},   {"Hat", 1},
                             {"Tom 1", 1},   {"Tom 2", 1},    {"OH L", 1},    {"OH R", 1},
                             {"Bass DI", 2}, {"Bass Mic", 2}, {"Gtr L", 5},   {"Gtr R", 5},
                             {"Keys L", 4},  {"Keys R", 4},   {"Organ", 4},   {"Lead Vox", leadSwatch},
                             {"BV 1", 8},    {"BV 2", 8},     {"BV 3", 8},    {"Perc", 3},
                             {"Shaker", 3},  {"Brass 1", 6},  {"Brass 2", 6}, {"Sax", 6},
                             {"Strings", 6}, {"Pad", 4},      {"Loop", 0},    {"Click", 0},
                             {"Room L", 1},  {"Room R", 1},   {"Talk", 0},    {"Tape", 0}};
constexpr Named groupNames[]{{"Drums", 1}, {"Bass", 2},  {"Guitars", 5}, {"Keys", 4},
                             {"Vox", 8},   {"Brass", 6}, {"Perc", 3},    {"FX", 8}};

/// Positions as in a mix: most of a record away from zero.
template <typename Record>
void turnKnobs(Record& record, const RecordControls<Record>& controls, std::mt19937& random) {
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (const RecordControl<Record>& control : controls.list) {
        if (control.isSwitch())
            record.*std::get<0>(control.field) = between(0, 1) < 0.22;
        else if (!control.travel.positions.isEmpty())
            record.*std::get<1>(control.field) = 3;
        else
            record.*std::get<1>(control.field) = control.travel.valueUnderHand(between(0.22, 0.78));
    }
}

} // namespace

void Tour::labelChannels() {
    DeskView& desk = _app.window.desk();
    clickControl(*desk.strip(ChannelKind::input(1)), QStringLiteral("scribble"));
    ScribbleEditor& editor = desk.scribbleEditor();
    const auto press = [&](int key, const QString& text) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&editor.field(), &event);
    };
    const auto label = [&](const Named& named) {
        for (const char letter : QLatin1String(named.name))
            press(0, QString(QLatin1Char(letter)));
        click(editor.swatch(named.swatch));
        if (named.swatch == leadSwatch) {
            _guide.passTime(300); // the strip is brought into view
            _guide.picture(_app.window, QStringLiteral("scribble-editing"));
        }
        press(Qt::Key_Tab, {});
    };
    for (const Named& named : inputNames)
        label(named);
    label({"Mix", 0});
    for (const Named& named : groupNames)
        label(named);
    press(Qt::Key_Return, {});
    desk.inputs().scrollTo(0);
}

void Tour::writeDown() {
    _guide.beginStep(QStringLiteral("Label the channels, and write down what has no MIDI"));
    labelChannels();
    const auto labels = _app.channelLabels.labelsByChannelID.value();
    _guide.check(labels.size() == channelCount && labels.value(QStringLiteral("group-8")).name == QLatin1String("FX"),
                 QStringLiteral("%1 channels are labelled, with Tab from one to the next").arg(labels.size()));
    _guide.check(_app.window.history().count() == channelCount, QStringLiteral("each label can be taken back"));

    std::mt19937 random(11);
    for (const ChannelState* channel : _app.desk.model.allVisibleChannels()) {
        ManualChannelSettings settings;
        turnKnobs(settings, ManualControls::channel(), random);
        settings.lineSource = settings.pad = settings.solo = settings.manualMute = settings.bypass = false;
        settings.assignStereo = true;
        _app.manualSettings.store(channel->id, settings);
    }
    MasterSectionSettings master;
    turnKnobs(master, ManualControls::masterSection(), random);
    for (EffectsReturnSettings& effects : master.effectsReturns)
        turnKnobs(effects, ManualControls::effectsReturn(), random);
    _app.masterSection.setSettings(master);

    ControlHost& module = *_app.window.desk().inputModule(2);
    const QPointF knob = QRectF(module.controlRect(module.controlIndex(QStringLiteral("eqHiMidGain")))).center();
    const double before = _app.manualSettings.settings(QStringLiteral("input-2")).eqHiMidGain;
    const int steps = _app.window.history().count();
    drag(module, knob, knob - QPointF(0, 30));
    const double after = _app.manualSettings.settings(QStringLiteral("input-2")).eqHiMidGain;
    _guide.check(std::abs(after - std::min(before + 6, 15.0)) < 0.76,
                 QStringLiteral("a knob dragged by 30 pixels went from %1 to %2 dB").arg(before).arg(after));
    _guide.check(_app.window.history().count() == steps + 1, QStringLiteral("the drag is one step to take back"));
    _guide.picture(_app.window, QStringLiteral("written-down"));
}

void Tour::loseTheCable() {
    _guide.beginStep(QStringLiteral("MIDI Out is unplugged while the mix goes on, and comes back"));
    const QString port = SimulatedConsole::portName();
    _rig.service.unplug(port);
    _guide.check(_guide.waitFor([this] {
        return _app.desk.output.port.statusText.value() == QStringLiteral("Output: reconnecting…") &&
               _app.desk.input.connection.statusText.value() == QStringLiteral("Source reconnecting…");
    }),
                 QStringLiteral("both ports say that they are reconnecting"));
    dragFader(ChannelKind::group(1), 100, 60);
    _guide.check(_rig.desk.vca(ChannelKind::group(1)) != _app.desk.model.groups()[0]->faderValue.value(),
                 QStringLiteral("the desk cannot follow now"));
    _guide.picture(_app.window, QStringLiteral("cable-out"));
    _rig.service.plug(port);
    _guide.check(_guide.waitFor([this] {
        return _app.desk.output.port.statusText.value() == QStringLiteral("Output: Rig Console") &&
               _app.desk.input.connection.statusText.value() == QStringLiteral("Connected: Rig Console");
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
    _app.desk.model.modelSize = ConsoleModel::ModelSize::ch24;
    _guide.picture(_app.window, QStringLiteral("24-channel"));
    _app.desk.model.modelSize = ConsoleModel::ModelSize::ch32;
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
    _app.window.desk().isFolded = true;
    for (const QSize size : {QSize(1366, 768), QSize(1600, 900)}) {
        _app.window.resize(size);
        _guide.picture(_app.window, QStringLiteral("folded-%1x%2").arg(size.width()).arg(size.height()));
    }
    _app.window.desk().isFolded = false;
    RigPane pane(_rig.desk, _app.window);
    inBothThemes([&](const QString& theme) {
        _app.window.resize(1206, 608); // as it first opens on a screen of 1366x768
        _guide.picture(_app.window, QStringLiteral("rig-") + theme);
    });
    pane.hide();
    for (const int width : {1024, 1180, 1280, 1366, 1600}) {
        _app.window.resize(width, 720);
        _guide.picture(_app.window, QStringLiteral("width-%1").arg(width));
    }
}

} // namespace tessik
