// What it costs to show the desk. Faders move in real time; the rest is the median of single steps.
#include "Bench.h"
#include "TessikAutomation/Views/Automation/PassLanesView.h"
#include "TessikAutomation/Views/Automation/PassesPopover.h"
#include "TessikAutomation/Views/RigPane.h"
#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"
#include "TessikAutomation/Views/Window/MainWindow.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>

#include <algorithm>
#include <cmath>
#include <random>
#include <sys/resource.h>

namespace tessik {
namespace {

using bench::Benchmark;
using bench::Report;

struct Desk {
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous};
    DeskLink link{service, QStringLiteral("TessikAutomation Console")};
    ConsoleModel& model = link.model;
    ManualSettingsStore manualSettings;
    ChannelLabelStore labels;
    MasterSectionStore master;
    MTCClock mtcClock{service, QStringLiteral("TessikAutomation Timecode")};
    TransportManager transport{service};
    ThemeStore theme;
    MainWindow window{{theme, link, mtcClock, transport, manualSettings, labels, master}};

    explicit Desk(QSize size) {
        window.resize(size);
        window.show();
        QApplication::processEvents();
    }
    void moveFaders(double seconds) {
        int i = 0;
        for (ChannelState* channel : model.allVisibleChannels())
            model.shown(MIDIChannelMapping::faderCC(channel->kind),
                        64 + int(std::lround(60 * std::sin(seconds * 1.7 + 0.5 * i++))));
    }
};

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) * 1e-6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Share of one core, in percent, while `move` is called 30 times a second with the time in seconds.
template <typename Move>
double loadOf(Move move) {
    QElapsedTimer time;
    time.start();
    QTimer mover;
    mover.setTimerType(Qt::PreciseTimer);
    mover.callOnTimeout([&] { move(double(time.elapsed()) / 1000); });
    mover.start(1000 / 30);
    const auto run = [&](qint64 milliseconds) {
        const qint64 end = time.elapsed() + milliseconds;
        while (time.elapsed() < end)
            QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    };
    run(500);
    const double before = processorSeconds();
    const qint64 start = time.nsecsElapsed();
    run(5000);
    return 100 * (processorSeconds() - before) / (double(time.nsecsElapsed() - start) * 1e-9);
}

/// While all 41 faders move.
double repaintLoad(QSize size) {
    Desk desk(size);
    return loadOf([&](double seconds) { desk.moveFaders(seconds); });
}

template <typename Step>
double medianMilliseconds(int count, Step step) {
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
        QElapsedTimer timer;
        timer.start();
        step(i);
        QApplication::processEvents();
        times.push_back(double(timer.nsecsElapsed()) * 1e-6);
    }
    std::nth_element(times.begin(), times.begin() + count / 2, times.end());
    return times[std::size_t(count / 2)];
}

/// The load on a screen of two device pixels a pixel, which a process has from its start.
double repaintLoadAtScale2() {
    QProcess self;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    self.setProcessEnvironment(environment);
    self.start(QCoreApplication::applicationFilePath(), {QStringLiteral("repaint_cpu_percent")});
    self.waitForFinished();
    return self.readAllStandardOutput().simplified().split(' ').value(1, "nan").toDouble();
}

const Benchmark repaint("repaint_cpu_percent", [](const Report& report) {
    if (qApp->devicePixelRatio() != 1) return report({"repaint_cpu_percent", repaintLoad({1600, 900}), "%", {}});
    report({"repaint_cpu_percent", repaintLoad({1600, 900}), "%", 7});
    report({"repaint_cpu_percent.scale2", repaintLoadAtScale2(), "%", 10});
    report({"repaint_cpu_percent.2560x1440", repaintLoad({2560, 1440}), "%", 9});
});

/// What the rig's pane costs beside the window, with all of its faders under way.
const Benchmark rigPane("rig_pane_cpu_percent", [](const Report& report) {
    Desk desk({1600, 900});
    SimulatedConsole console(desk.service);
    RigPane pane(console, desk.window);
    const auto move = [&](double seconds) {
        int i = 0;
        for (const ChannelKind kind : console.channels())
            console.moveFader(kind, 64 + int(std::lround(60 * std::sin(seconds * 1.7 + 0.5 * i++))));
    };
    pane.hide();
    const double without = loadOf(move);
    pane.show();
    report({"rig_pane_cpu_percent", loadOf(move) - without, "%", 3});
});

const Benchmark fullRepaint("full_repaint_ms", [](const Report& report) {
    Desk desk({1600, 900});
    const QList<QWidget*> widgets = desk.window.findChildren<QWidget*>();
    report({"full_repaint_ms",
            medianMilliseconds(101,
                               [&](int) {
                                   for (QWidget* widget : widgets)
                                       widget->update();
                               }),
            "ms", 8});
});

const Benchmark themeSwitch("theme_switch_ms", [](const Report& report) {
    Desk desk({1600, 900});
    report({"theme_switch_ms",
            medianMilliseconds(21, [&](int i) { desk.theme.setTheme(i % 2 ? AppTheme::dark : AppTheme::light); }), "ms",
            100});
});

const Benchmark scrollFrame("scroll_frame_ms", [](const Report& report) {
    Desk desk({1600, 900});
    HorizontalOnlyScrollView& inputs = desk.window.desk().inputs();
    const int step = inputs.scrollBar()->singleStep();
    report({"scroll_frame_ms",
            medianMilliseconds(
                101, [&](int i) { inputs.scrollTo(i / 10 % 2 ? inputs.left() - step : inputs.left() + step); }),
            "ms", 1});
});

/// Lists of the records of long sessions, filled anew and opened.
const Benchmark listOpen("list_open_ms", [](const Report& report) {
    Desk desk({1600, 900});
    QUndoStack history;
    QWidget& over = *desk.window.centralWidget();
    SymbolButton button(SymbolButton::Face::plate, QStringLiteral("passes"), {}, desk.window.drawing(), &over);
    SnapshotStore snapshots;
    SnapshotRecall recall(desk.model, desk.manualSettings, desk.link.output);
    SnapshotsPopover snapshotList(snapshots, recall, history, button, desk.window.drawing(), &over);
    PassStore passes;
    PassEngine engine(desk.model, desk.mtcClock, desk.link.output, snapshots);
    PassesPopover passList(engine, passes, history, button, desk.window.drawing(), &over);
    const auto measure = [&](const char* name, double goal, Popover& list, const std::function<void()>& fill) {
        report({name,
                medianMilliseconds(5,
                                   [&](int) {
                                       list.close();
                                       fill();
                                       list.open();
                                   }),
                "ms", goal});
    };
    measure("list_open_ms.snapshots500", 100, snapshotList, [&] {
        QList<Snapshot> all;
        for (int i = 0; i < 500; ++i)
            all.append(recall.capture(QStringLiteral("Snapshot %1").arg(i), currentSecond()));
        snapshots.load(all, std::nullopt);
    });
    const auto fillPasses = [&](int count) {
        QList<AutomationPass> all;
        for (int i = 0; i < count; ++i)
            all.append(
                {.id = QUuid::createUuid(), .name = QStringLiteral("Pass %1").arg(i), .createdAt = currentSecond()});
        passes.load(all);
    };
    measure("list_open_ms.passes2000", 100, passList, [&] { fillPasses(2000); });
    measure("list_open_ms.passes10000", 1000, passList, [&] { fillPasses(10'000); });
});

/// A pass of 41 channels with a million moves in an hour, looked at whole.
const Benchmark laneDraw("lane_draw_ms", [](const Report& report) {
    Desk desk({1600, 900});
    SnapshotStore snapshots;
    PassStore passes;
    PassEngine engine(desk.model, desk.mtcClock, desk.link.output, snapshots);
    AutomationPass pass{.id = QUuid::createUuid(), .name = QStringLiteral("Million"), .createdAt = currentSecond()};
    std::minstd_rand random(1);
    for (int i = 0; i < 1'000'000; ++i) {
        const int channel = int(random() % channelCount);
        const ChannelKind kind = channel < maxInputs    ? ChannelKind::input(channel + 1)
                                 : channel == maxInputs ? ChannelKind::stereo()
                                                        : ChannelKind::group(channel - maxInputs);
        const bool isSwitch = random() % 10 == 0;
        pass.events.append({std::int64_t(i) * 3600 * 30 / 1'000'000, kind,
                            isSwitch ? PassEventValue::switches({.chanMuted = random() % 2 == 0})
                                     : PassEventValue::fader(std::int64_t(random() % 128))});
    }
    passes.save(pass);
    const LaneObjects objects{passes, engine, desk.labels, desk.mtcClock, desk.transport, desk.window.drawing()};
    const auto measure = [&](const char* name, QSize size) {
        PassLanesView view(pass, objects, nullptr);
        view.resize(size);
        view.show();
        QApplication::processEvents();
        report({name, medianMilliseconds(21, [&](int) { view.fitPass(); }), "ms", 50});
    };
    measure("lane_draw_ms", {1600, 900});
    measure("lane_draw_ms.2560x1440", {2560, 1440});
    measure("lane_draw_ms.allLanes", {1600, 41 * 120});
});

} // namespace
} // namespace tessik
