// What automation costs, and how true it is: moves of all faders written and played back over the rig's cable, and
// the engine's work in a pass of a million events.
#include "Bench.h"
#include "Support/AutomationRig.h"
#include "TessikAutomation/Application/Application.h"

#include <QAbstractEventDispatcher>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <random>

namespace tessik::bench {
namespace {

using namespace std::chrono_literals;

double milliseconds(Uptime time) { return std::chrono::duration<double, std::milli>(time).count(); }

/// The value below which `share` of them are; 1 gives the worst.
double quantile(std::vector<double>& values, double share) {
    if (values.empty()) return NAN;
    const auto at = values.begin() + std::ptrdiff_t(std::ceil(share * double(values.size())) - 1);
    std::nth_element(values.begin(), std::max(at, values.begin()), values.end());
    return *std::max(at, values.begin());
}

/// Hands on every fader of a desk: random walks, ten moves a second each.
class Walks {
public:
    explicit Walks(SimulatedConsole& desk) : _desk(desk) {
        for (const ChannelKind kind : desk.channels())
            _walks.push_back({kind, 64, Uptime(1ms) * int(_random() % 100)});
    }
    /// Makes the moves that are due so long after the beginning.
    void move(Uptime since) {
        for (Walk& walk : _walks)
            for (; walk.next <= since; walk.next += 100ms) {
                const int step = 1 + int(_random() % 6);
                walk.value += _random() % 2 ? step : -step;
                if (walk.value < 0 || walk.value > 127) walk.value = std::clamp(walk.value, 6, 121);
                _desk.moveFader(walk.kind, walk.value);
            }
    }

private:
    struct Walk {
        ChannelKind kind;
        int value;
        Uptime next;
    };
    SimulatedConsole& _desk;
    std::minstd_rand _random{1};
    std::vector<Walk> _walks;
};

/// A fader value that reached one end of a cable.
struct Arrival {
    Uptime at;
    int cc;
    int value;
};

/// Fader moves as two witnesses tell them, lane by lane. A move that only the first has was overtaken by the next of
/// its fader; one that only the second has is a difference.
struct Comparison {
    std::vector<std::pair<LaneEvent, Arrival>> pairs;
    int overtaken = 0;
    int different = 0;

    Comparison(const AutomationPass& pass, const std::vector<Arrival>& arrivals) {
        std::array<std::vector<LaneEvent>, MIDIChannelMapping::controllerCount> lanes;
        for (const TimedEvent& event : pass.events)
            if (const auto lane = LaneEvent::of(event); lane && lane->cc < MIDIChannelMapping::switchCCOffset)
                lanes[lane->cc].push_back(*lane);
        std::array<std::size_t, MIDIChannelMapping::controllerCount> next{};
        for (const Arrival& arrival : arrivals) {
            const std::vector<LaneEvent>& lane = lanes[std::size_t(arrival.cc)];
            std::size_t& i = next[std::size_t(arrival.cc)];
            std::size_t found = i;
            while (found < lane.size() && found < i + 3 && lane[found].value != arrival.value)
                ++found;
            if (found == lane.size() || found == i + 3) {
                ++different;
                continue;
            }
            overtaken += int(found - i);
            pairs.emplace_back(lane[found], arrival);
            i = found + 1;
        }
        for (std::size_t cc = 0; cc < lanes.size(); ++cc)
            different += int(lanes[cc].size() - next[cc]);
    }
};

// ---- in real time, by the program's own timers, with its window

void runFor(Uptime time, const std::function<void()>& eachTurn = {}) {
    QEventLoop loop;
    QTimer end;
    end.setTimerType(Qt::PreciseTimer);
    end.callOnTimeout([&loop] { loop.quit(); });
    end.start(std::chrono::duration_cast<std::chrono::milliseconds>(time));
    QTimer turns;
    turns.setTimerType(Qt::PreciseTimer);
    if (eachTurn) {
        turns.callOnTimeout(eachTurn);
        turns.start(1ms);
    }
    loop.exec();
}

const Benchmark playTiming("play_timing_ms", [](const Report& report) {
    constexpr Uptime length = 15s;
    constexpr auto rate = MTCFrameRate::fps25;
    constexpr std::int64_t start = 25 * 60;
    const UptimeClock& clock = UptimeClock::system();
    const QTemporaryDir folder;
    Rig rig;
    Application application(rig.service, folder.path());
    application.connectToRig();
    application.window.resize(1600, 900);
    application.window.show();
    PassEngine& engine = application.passEngine;

    rig.recorder.locate(TimecodePosition::fromTotalFrames(rate, start));
    engine.mode = AutomationMode::write;
    rig.recorder.play();
    runFor(1s);
    const Uptime begun = clock.now();
    Walks walks(rig.desk);
    runFor(length, [&] { walks.move(clock.now() - begun); });
    runFor(200ms);
    // A machine too busy for half a second of timecode has ended the take: no figure of it would mean anything.
    const bool isWhole = engine.isRecording();
    report({"play_timing_ms.take_broken_off", double(!isWhole), "", 0});
    if (!isWhole) return;
    rig.recorder.stop();
    runFor(1s);
    const auto pass = engine.finishRecording(QStringLiteral("Walks"), application.passes);

    std::vector<Arrival> arrivals;
    rig.recorder.locate(TimecodePosition::fromTotalFrames(rate, start - 50)); // time to assert the beginning
    rig.recorder.play();
    runFor(2s);
    const auto listener = rig.desk.vcaMoved.connect([&](Uptime at, ChannelKind kind, int value) {
        arrivals.push_back({at, MIDIChannelMapping::faderCC(kind), value});
    });
    runFor(length + 3s);
    // Where the tape was at any instant: it runs at its own speed.
    const Uptime now = clock.now();
    const double frameNow = rig.recorder.truePosition(now);
    const double perFrame = 1e9 / realFramesPerSecond(rate);
    const auto frameTime = [&](std::int64_t offset) {
        const double frame = double(pass->startTimecode.totalFrames() + offset);
        return now - Uptime(std::llround((frameNow - frame) * perFrame));
    };

    // On the cable alone every event of a frame leaves with it, one behind the other.
    const Comparison played(*pass, arrivals);
    std::vector<double> late, cable, beyond;
    Uptime cableFreeAt = distantPast;
    for (const auto& [event, arrival] : played.pairs) {
        const Uptime due = frameTime(event.frameOffset);
        cableFreeAt = std::max(cableFreeAt, due) + 3 * MIDICable::byteTime;
        late.push_back(milliseconds(arrival.at - due));
        cable.push_back(milliseconds(cableFreeAt - due));
        beyond.push_back(milliseconds(arrival.at - cableFreeAt));
    }
    for (const auto& [name, share] : {std::pair{"median", 0.5}, {"p99", 0.99}, {"worst", 1.0}}) {
        const std::optional<double> goal = share == 0.5    ? std::optional(3.0)
                                           : share == 0.99 ? std::optional(12.0)
                                                           : std::nullopt;
        const std::string figure = std::string("play_timing_ms.");
        report({figure + name, quantile(late, share), "ms", std::nullopt});
        report({figure + "cable_alone." + name, quantile(cable, share), "ms", std::nullopt});
        report({figure + "beyond_cable." + name, quantile(beyond, share), "ms", goal});
    }
    report({"play_timing_ms.events", double(played.pairs.size()), "", std::nullopt});
    report({"play_timing_ms.overtaken", double(played.overtaken), "", std::nullopt});
    report({"play_timing_ms.different", double(played.different), "", 0});
});

// ---- in a time of its own

const Benchmark identity("record_play_identity", [](const Report& report) {
    constexpr Uptime length = 120s;
    constexpr std::int64_t start = 25 * 60;
    test::AutomationRig rig;
    std::vector<Arrival> recorded, arrivals;
    const auto listener = rig.model.changed.connect([&](const ConsoleChange& change) {
        if (change.origin == ChangeOrigin::desk || change.origin == ChangeOrigin::dump)
            recorded.push_back({change.stamp, change.cc, change.value});
    });
    // The worst distance in frames between what an event says and where the tape was.
    const auto worstFrame = [&](const AutomationPass& pass, const Comparison& moves) {
        double worst = 0;
        for (const auto& [event, arrival] : moves.pairs) {
            const double frame = std::floor(rig.tape.truePosition(arrival.at));
            worst = std::max(worst, std::abs(frame - double(pass.startTimecode.totalFrames() + event.frameOffset)));
        }
        return worst;
    };
    rig.locate(start);
    rig.engine.mode = AutomationMode::write;
    rig.roll(1s);
    Walks walks(rig.desk);
    for (const Uptime begun = rig.uptime.now(); rig.uptime.now() < begun + length;) {
        rig.run(1ms);
        walks.move(rig.uptime.now() - begun);
    }
    rig.run(200ms);
    const AutomationPass soFar = rig.engine.pendingTake()->finished();
    const Comparison written(soFar, recorded);
    const double writtenFrame = worstFrame(soFar, written);
    rig.stop();
    const auto pass = rig.engine.finishRecording(QStringLiteral("Walks"), rig.passes);
    rig.locate(start - 50);
    rig.roll(2s);
    const std::int64_t overtakenBefore = rig.output.overtakenCount();
    const auto arrivalListener = rig.desk.vcaMoved.connect([&](Uptime at, ChannelKind kind, int value) {
        arrivals.push_back({at, MIDIChannelMapping::faderCC(kind), value});
    });
    rig.run(length + 3s);
    const Comparison played(*pass, arrivals);
    report({"record_play_identity.recorded_moves", double(recorded.size()), "", std::nullopt});
    report({"record_play_identity.recorded_different", double(written.different + written.overtaken), "", 0});
    report({"record_play_identity.recorded_frame_error", writtenFrame, "frames", 0});
    report({"record_play_identity.played_different", double(played.different), "", 0});
    report({"record_play_identity.played_frame_error", worstFrame(*pass, played), "frames", 0});
    report({"record_play_identity.overtaken", double(rig.output.overtakenCount() - overtakenBefore), "", std::nullopt});
});

/// A rig whose engine plays a pass of a million events, an hour of moves on every channel.
struct LongPass : test::AutomationRig {
    static constexpr std::int64_t frames = 3600 * 25;
    static constexpr int eventCount = 1'000'000;

    LongPass() {
        AutomationPass pass{.id = QUuid::createUuid(), .name = {}, .createdAt = wallClock(), .events = {}};
        pass.frameRate = MTCFrameRate::fps25;
        pass.startTimecode = TimecodePosition::fromTotalFrames(pass.frameRate, 0);
        pass.initialState.emplace();
        std::minstd_rand random(1);
        const std::vector<ChannelKind> kinds = desk.channels();
        for (const ChannelKind kind : kinds)
            pass.initialState->append({.kind = kind, .faderValue = 50});
        pass.events.reserve(eventCount);
        for (std::int64_t i = 0; i < eventCount; ++i)
            pass.events.append({i * frames / eventCount, kinds[random() % kinds.size()],
                                i % 10 ? PassEventValue::fader(int(random() % 128))
                                       : PassEventValue::switches(
                                             MIDIChannelMapping::decodeSwitchByte(std::uint8_t(random() % 128)))});
        engine.select(pass);
        engine.mode = AutomationMode::read;
        tick = [this] {
            const auto before = std::chrono::steady_clock::now();
            engine.tick();
            const auto cost = std::chrono::steady_clock::now() - before;
            _costs.push_back(std::chrono::duration<double, std::micro>(cost).count());
        };
        tape.play();
    }
    /// Channels on which the desk does not hold what the pass says, by a walk over all of it.
    int different() {
        run(500ms);
        while (std::fmod(tape.truePosition(uptime.now()), 1) < 0.5) // what has begun the frame has landed
            run(1ms);
        const auto offset = std::int64_t(tape.truePosition(uptime.now()));
        ControllerValues said = laneValues(*engine.selectedPass.value()->initialState);
        for (const TimedEvent& event : engine.selectedPass.value()->events)
            if (const auto lane = LaneEvent::of(event); lane->frameOffset <= offset) said[lane->cc] = lane->value;
        int count = 0;
        for (const ChannelKind kind : desk.channels())
            count += desk.vca(kind) != said[std::size_t(MIDIChannelMapping::faderCC(kind))] ||
                     MIDIChannelMapping::encodeSwitchByte(desk.switches(kind)) !=
                         said[std::size_t(MIDIChannelMapping::switchCC(kind))];
        return count;
    }
    /// Runs, and gives the cost of each tick in µs.
    std::vector<double> ticks(Uptime duration) {
        _costs.clear();
        run(duration);
        return std::exchange(_costs, {});
    }

private:
    std::vector<double> _costs;
};

const Benchmark chase("chase_us", [](const Report& report) {
    LongPass rig;
    for (const auto& [where, frame] :
         {std::pair{"start", std::int64_t(25)}, {"middle", LongPass::frames / 2}, {"end", LongPass::frames - 250}}) {
        std::vector<double> costs;
        for (int n = 0; n < 21; ++n) {
            rig.tape.locate(TimecodePosition::fromTotalFrames(MTCFrameRate::fps25, frame + n));
            costs.push_back(0);
            for (const double cost : rig.ticks(500ms)) // the tick that asserts is by far the longest
                costs.back() = std::max(costs.back(), cost);
        }
        report({std::string("chase_us.") + where, quantile(costs, 0.5), "us", 200});
        report({std::string("chase_us.") + where + ".worst", quantile(costs, 1), "us", std::nullopt});
        report({std::string("chase_us.") + where + ".desk_different", double(rig.different()), "", 0});
    }
});

/// Counts what the engine's two timers do while the event loop runs; no other is as quick.
class QuickTimers : public QObject {
public:
    QuickTimers() { QCoreApplication::instance()->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* timer = event->type() == QEvent::Timer ? qobject_cast<QTimer*>(watched) : nullptr;
        if (timer && timer->interval() <= 5) ++count;
        return false;
    }
};

const Benchmark tick("tick_us", [](const Report& report) {
    LongPass rig;
    rig.run(2s);
    std::vector<double> costs = rig.ticks(60s);
    report({"tick_us.median", quantile(costs, 0.5), "us", 20});
    report({"tick_us.p99", quantile(costs, 0.99), "us", 20});
    report({"tick_us.worst", quantile(costs, 1), "us", std::nullopt});
    report({"tick_us.desk_different", double(rig.different()), "", 0});
    rig.stop();
    for (const AutomationMode mode : {AutomationMode::read, AutomationMode::off}) {
        rig.engine.mode = mode;
        QuickTimers timers;
        runFor(1s);
        const bool isOff = mode == AutomationMode::off;
        report({isOff ? "tick_us.timer_events_off" : "tick_us.timer_events_armed", double(timers.count), "",
                isOff ? std::optional(0.0) : std::nullopt});
    }
});

} // namespace
} // namespace tessik::bench
