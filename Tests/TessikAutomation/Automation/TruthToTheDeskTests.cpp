#include "Support/AutomationRig.h"
#include "Support/RandomMix.h"
#include "Support/TakeCheck.h"

#include <gtest/gtest.h>

namespace tessik::test {
namespace {

using namespace std::chrono_literals;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::uint32_t seedCount = 30;
#else
constexpr std::uint32_t seedCount = 300;
#endif

constexpr Uptime sessionLength = 480s;
constexpr Uptime settled = 1s; // after so long without a hand everything has to agree
/// Frames: events this near to the tape's position may have been played or not yet, sent, carried, landed. Two are
/// what a drop minute skips before the timecode can tell.
constexpr double playing = 3;

/// One session of somebody who does everything at once, and what has to be true whenever he rests for a second.
class Session : AutomationRig, RandomMix {
public:
    Session(std::uint32_t seed, Tally& tally)
        : AutomationRig(settings(seed)),
          RandomMix(seed * 7919 + 1, settings(seed).rate, desk.channels(), wallClock),
          _tally(tally) {
        _log = qEnvironmentVariableIsSet("TESSIK_SEED");
        _tellsLocates = settings(seed).tellsLocates;
        for (const ChannelKind kind : desk.channels())
            for (const int cc : {MIDIChannelMapping::faderCC(kind), MIDIChannelMapping::switchCC(kind)})
                _lanes.push_back(cc);
        _consoleListener = model.changed.connect([this](const ConsoleChange& change) {
            Lane& lane = _lane[std::size_t(change.cc)];
            lane.isScreenAlone = false;
            if (change.origin == ChangeOrigin::dump) {
                _assertedAt = _dumpedAt = uptime.now(); // half a second later, that is
            } else {
                lane.touchedAt = uptime.now();
                lane.touchedFrame = position();
                lane.touchedBy = change.origin;
                lane.told = change.value;
            }
            if (change.origin == ChangeOrigin::dump) lane.isHeld = isUpdated(change.cc);
        });
        engine.onTakeSuperseded = [this](const AutomationPass& take) {
            checkTake(take);
            passes.save(take);
        };
        _takeNotifier = engine.recordingPass.addNotifier([this] { noteTake(); });
        _rollNotifier = engine.isRolling.addNotifier([this] {
            if (engine.isRolling.value()) _assertedAt = uptime.now();
        });
        for (int i = 0; i < 2; ++i)
            passes.save(randomPass());
        for (int i = 0; i < 3; ++i)
            snapshots.save(randomSnapshot());
        if (upTo(2)) snapshots.setDefault(snapshots.snapshots.value().front().id);
        if (upTo(4) == 0) {
            desk.setEchoing(true);
            note("ECHO");
        }
        locate(somewhere());
        tape.setSpeed(0.95 + 0.01 * upTo(11));
    }

    /// Plays for minutes. False when something was not true.
    bool play() {
        const Uptime end = uptime.now() + sessionLength;
        while (uptime.now() < end && !testing::Test::HasFailure()) {
            const Uptime begunAt = uptime.now();
            for (int n = 1 + upTo(6); n > 0; --n) {
                act();
                if (upTo(2)) run(Uptime(1ms) * upTo(400));
            }
            rest();
            if (isTapeTold()) _tally.seconds += (uptime.now() - begunAt) / 1s;
        }
        return !testing::Test::HasFailure();
    }

private:
    struct Lane {
        bool isScreenAlone = false; // selecting or a local Zero changed the screen and not the desk
        bool isHeld = false;        // a dump was put over the automation of an UPDATE
        Uptime touchedAt = distantPast;
        double touchedFrame = 0;
        ChangeOrigin touchedBy = ChangeOrigin::desk;
        int told = 0;
    };

    static RecorderSettings settings(std::uint32_t seed) {
        return {.rate = MTCFrameRate(seed % 4),
                .jitter = Uptime(1ms) * (seed % 3) / 2,
                .audioBuffer = seed % 5 == 0 ? Uptime(5ms) * (seed % 9) : 0ms,
                .slowStart = seed % 7 == 0 ? Uptime(500ms) * (seed % 9) : 0ms,
                .tellsLocates = seed % 11 > 3,
                .seed = seed};
    }

    template <typename... Args>
    void note(const char* what, Args... args) {
        if (!_log) return;
        std::printf("%9.3f %10.2f %d ", double(uptime.now().count()) / 1e9, position(), int(engine.mode.value()));
        std::printf(what, args...);
        std::printf("\n");
    }

    double position() { return tape.truePosition(uptime.now()); }

    // ---- what somebody does

    void act() {
        const int n = upTo(30);
        if (n < 5) return ride();
        if (n < 9) return edit(n);
        if (n < 12) return pressMode();
        if (n < 14) return pressNull();
        if (n < 15) return pickPass();
        if (n < 18) return pressPlay();
        if (n < 19) return pressStop();
        if (n < 20) return upTo(2) ? locate(somewhere()) : loop();
        if (n < 21) return upTo(3) ? shuttle() : tape.setSpeed(0.95 + 0.01 * upTo(11));
        if (n < 22) return upTo(2) ? pullTimecode() : pullOutput();
        if (n < 23) return upTo(2) ? recallSomething() : zero();
        if (n < 24) return recallTwice();
        if (n < 25) return changeChannel();
        if (n < 26) return overrun();
        if (n < 28) return troubleTape();
        n < 29 ? compare() : nameTake();
    }

    void edit(int n) {
        const ChannelKind kind = someChannel();
        note("%s %s", n < 7 ? "desk switches" : n < 8 ? "screen fader" : "screen mute", qPrintable(kind.id()));
        if (n < 7) return desk.setSwitches(kind, someSwitches());
        if (n < 8) return screen.setFader(channel(kind), someFader());
        screen.setSwitch(channel(kind), &ChannelState::chanMuted, upTo(2));
    }
    void ride() {
        const ChannelKind kind = someChannel();
        int value = desk.physicalFader(kind);
        note("ride %s from %d", qPrintable(kind.id()), value);
        for (int n = 1 + upTo(10); n > 0; --n) {
            value = std::clamp(value + upTo(21) - 10, 0, 127);
            desk.moveFader(kind, value);
            run(Uptime(1ms) * upTo(60));
        }
        note("ride %s to %d", qPrintable(kind.id()), value);
    }
    void pressMode() {
        const AutomationMode chosen = upTo(3) ? AutomationMode::update : allAutomationModes[std::size_t(upTo(4))];
        if (needsPass(chosen) && !engine.playedPass.value()) return;
        note("mode %s", qPrintable(rawValue(chosen)));
        if (engine.mode.value() != chosen) _assertedAt = _nullAt = uptime.now();
        engine.mode = chosen;
    }
    void pressNull() {
        if (!needsPass(engine.mode.value())) return;
        note("null %d", !engine.nullEnabled.value());
        engine.setNullEnabled(!engine.nullEnabled.value());
        if (engine.nullEnabled.value()) _assertedAt = _nullAt = uptime.now();
    }
    void pickPass() {
        const QList<AutomationPass> all = passes.passes.value();
        const int n = upTo(int(all.size()) + (upTo(4) == 0));
        note("select %d", n);
        engine.select(n < all.size() ? std::optional(all[n]) : std::nullopt);
        _assertedAt = uptime.now();
        if (n < all.size())
            for (Lane& lane : _lane)
                lane.isScreenAlone = true;
    }
    void pressPlay() {
        if (tape.state() == SimulatedRecorder::State::playing) return;
        note("play");
        tape.play();
    }
    void pressStop() {
        note("stop");
        tape.stop();
        if (upTo(3)) run(Uptime(1ms) * upTo(2000));
    }
    bool isFar(std::int64_t frame) {
        return std::abs(std::remainder(double(frame) - position(), double(labelsPerDay(_tapeRate)))) > 100;
    }
    void locate(std::int64_t frame) {
        if (!_tellsLocates && !isFar(frame)) return; // what no full frame tells, and is no jump, goes unseen
        note("locate %lld", qlonglong(frame));
        tape.locate(TimecodePosition::fromTotalFrames(_tapeRate, frame));
        _assertedAt = uptime.now(); // by what rolls on from there, or will
    }
    void loop() {
        pressPlay();
        const std::int64_t frame = _firstFrame + upTo(800);
        for (int n = 1 + upTo(3); n > 0; --n) {
            run(Uptime(1ms) * (300 + upTo(1500)));
            if (upTo(2)) ride();
            locate(frame);
        }
    }
    void shuttle() {
        note("shuttle");
        if (upTo(2))
            tape.fastForward();
        else
            tape.rewind();
        run(Uptime(1ms) * upTo(1500));
        note("shuttle ends");
        if (upTo(2))
            tape.play();
        else
            tape.stop();
    }
    void pullTimecode() {
        const Uptime away = Uptime(1ms) * upTo(upTo(2) ? 600 : 2500);
        note("timecode away for %lld ms", qlonglong(away / 1ms));
        service.unplug(SimulatedRecorder::portName, VirtualMIDIService::Ends::sources);
        run(away / 2);
        if (const std::int64_t to = somewhere(); !upTo(3) && isFar(to)) locate(to); // no full frame tells
        run(away / 2);
        service.plug(SimulatedRecorder::portName, VirtualMIDIService::Ends::sources);
        note("timecode back");
    }
    void troubleTape() {
        const Uptime time = Uptime(1ms) * (8 + upTo(upTo(2) ? 300 : 1890));
        switch (upTo(3)) {
        case 0:
            note("slip of %lld ms", qlonglong(time / 1ms));
            tape.slip(time);
            break;
        case 1:
            note("dropout of %lld ms", qlonglong(time / 1ms));
            tape.dropOut(time);
            break;
        default: note("bad rate"); tape.misreadRate();
        }
        if (upTo(2)) ride();
        run(time);
    }
    void pullOutput() {
        _isOutputIn = !_isOutputIn;
        note("output %s", _isOutputIn ? "back" : "gone");
        if (_isOutputIn)
            service.plug(SimulatedConsole::portName(), VirtualMIDIService::Ends::destinations);
        else
            service.unplug(SimulatedConsole::portName(), VirtualMIDIService::Ends::destinations);
    }
    void recallSomething() {
        if (upTo(3) == 0) {
            note("desk scene");
            return desk.recallScene(upTo(SimulatedConsole::sceneCount));
        }
        const QList<Snapshot> all = snapshots.snapshots.value();
        note("recall");
        recall.recall(all[upTo(int(all.size()))]);
    }
    /// The second comes while the first is still on its way.
    void recallTwice() {
        const QList<Snapshot> all = snapshots.snapshots.value();
        note("recall twice");
        recall.recall(all[upTo(int(all.size()))]);
        run(Uptime(1ms) * upTo(80));
        recall.recall(all[upTo(int(all.size()))]);
    }
    /// First at the desk, then in the settings; what was sent between, nobody heard.
    void changeChannel() {
        const int basicChannel = 1 + upTo(16);
        note("channel %d", basicChannel);
        desk.setBasicChannel(basicChannel);
        run(Uptime(1ms) * upTo(500));
        output.midiChannel = basicChannel;
    }
    /// What a hand did meanwhile was lost: a scene tells everything again.
    void overrun() {
        note("overrun");
        desk.setLost(true);
        ride();
        run(100ms);
        desk.setLost(false);
        const MIDIEventList lost{.packets = {}, .dataLost = true};
        service.inject(service.sources().front().ref, lost);
        run(Uptime(1ms) * upTo(100));
        desk.recallScene(upTo(SimulatedConsole::sceneCount));
    }
    void zero() {
        const bool sends = upTo(2);
        note("zero %d", sends);
        output.resetChannels(model, sends);
        if (sends) return;
        for (Lane& lane : _lane) {
            lane.isScreenAlone = true;
            lane.touchedAt = uptime.now();
            lane.touchedFrame = position();
            lane.touchedBy = ChangeOrigin::zero;
        }
    }
    void compare() {
        if (!engine.waitingTake.value()) return;
        note("compare");
        engine.compare(!engine.isComparing.value());
        _assertedAt = uptime.now();
    }
    void nameTake() {
        const std::optional<AutomationPass> take = engine.waitingTake.value();
        if (!take) return;
        checkTake(*take);
        note("name or discard");
        if (upTo(2)) { // what plays then plays on
            if (engine.isComparing.value()) _assertedAt = uptime.now();
            return void(engine.finishRecording(QStringLiteral("Take"), passes));
        }
        engine.discardTake();
        _assertedAt = uptime.now();
        if (upTo(2)) engine.restoreTake(*take);
    }

    // ---- what has to be true

    /// The automation is asserted again half a second after the last fader: where the desk echoes, that may take long.
    bool isDumpHeld() { return uptime.now() < _dumpedAt + 600ms; }
    bool isTapeTold() { return tape.state() == SimulatedRecorder::State::playing && engine.isRolling.value(); }

    void rest() {
        run(settled + 200ms);
        while (_isOutputIn && (output.isBusy() || !desk.isQuiet()))
            run(1ms); // nothing on the cables
        note("check");
        if (desk.droppedBytes() != 0) return void(fail("the desk was sent more than its buffer holds"));
        for (const int cc : _lanes)
            if (!checkLane(cc)) return;
        if (isTapeTold() && engine.isRecording() && _isOutputIn && !isDumpHeld()) takeSample();
    }

    int held(int cc) {
        if (const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc)) return desk.vca(*kind);
        return MIDIChannelMapping::encodeSwitchByte(desk.switches(*MIDIChannelMapping::channelKindForSwitchCC(cc)));
    }
    ChannelState& stateOf(int cc) {
        const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc);
        return channel(kind ? *kind : *MIDIChannelMapping::channelKindForSwitchCC(cc));
    }

    /// Whether UPDATE has something to put back on a lane.
    bool isUpdated(int cc) {
        const std::optional<AutomationPass>& pass = engine.playedPass.value();
        return engine.mode.value() == AutomationMode::update && pass &&
               whatItSays(*pass, defaults(), cc, passFrame(position())).value;
    }

    bool checkLane(int cc) {
        const std::string name = "controller " + std::to_string(cc) + " at frame " + std::to_string(position());
        const std::optional<int> believed = output.believedValue(cc);
        const int shown = MIDIChannelMapping::controllerValue(stateOf(cc), cc);
        const bool isFader = cc < MIDIChannelMapping::switchCCOffset;
        const bool isNull = engine.nullEnabled.value() && isFader;
        _tally.lanes += believed.has_value();
        if (believed && *believed != held(cc))
            return fail(name + ": desk " + std::to_string(held(cc)) + " believed " + std::to_string(*believed));

        Lane& lane = _lane[std::size_t(cc)];
        const std::optional<Said> said = automation(cc);
        if (said && said->value && _isOutputIn && !isDumpHeld()) {
            const bool isCorrected = isNull && lane.touchedBy == ChangeOrigin::desk;
            const bool isHands = lane.touchedAt >= _assertedAt && !isCorrected &&
                                 !(said->eventAt && double(*said->eventAt) > passFrame(lane.touchedFrame) + playing);
            if (!isHands && said->nearestEvent > playing) {
                lane.isScreenAlone = false;
                ++(isNull ? _tally.nulled : _tally.played);
                if (held(cc) != *said->value)
                    return fail(name + ": desk " + std::to_string(held(cc)) + " pass " + std::to_string(*said->value));
                if (isNull && stateOf(cc).nullTarget.value() != said->value) return fail(name + ": NULL target");
            }
        }
        if (isNull && lane.touchedBy == ChangeOrigin::desk && lane.touchedAt > std::max(_nullAt, _dumpedAt)) {
            ++_tally.handed;
            if (shown != lane.told)
                return fail(name + ": screen " + std::to_string(shown) + " hand " + std::to_string(lane.told));
        }
        if (!believed || !_isOutputIn || isNull || lane.isScreenAlone) return true;
        ++_tally.screens;
        if (*believed != shown)
            return fail(name + ": screen " + std::to_string(shown) + " believed " + std::to_string(*believed));
        return true;
    }

    double passFrame(double frame) { return offsetIn(*engine.playedPass.value(), frame); }

    /// What a rolling READ plays on a lane.
    std::optional<Said> automation(int cc) {
        const std::optional<AutomationPass>& pass = engine.playedPass.value();
        if (engine.mode.value() != AutomationMode::read || !isTapeTold() || !pass || pass->frameRate != _tapeRate)
            return std::nullopt;
        return whatItSays(*pass, defaults(), cc, passFrame(position()));
    }
    QList<ChannelSnapshot> defaults() {
        const auto snapshot = snapshots.defaultSnapshot();
        return snapshot ? snapshot->channels : QList<ChannelSnapshot>();
    }

    void takeSample() {
        TakeCheck::Sample sample{position(), std::nullopt, {}};
        if (engine.mode.value() == AutomationMode::update) sample.updated = engine.playedPass.value();
        for (const int cc : _lanes)
            if (!_lane[std::size_t(cc)].isScreenAlone && !_lane[std::size_t(cc)].isHeld) sample.values[cc] = held(cc);
        _takeCheck.add(engine.recordingPass.value()->id, std::move(sample));
    }
    void noteTake() {
        const auto& take = engine.recordingPass.value();
        if (const QUuid id = take ? take->id : QUuid(); std::exchange(_take, id) == id) return;
        for (Lane& lane : _lane)
            lane.isHeld = false;
    }
    void checkTake(const AutomationPass& take) {
        if (const auto wrong = _takeCheck.contradiction(take, defaults(), playing, _tally)) fail(*wrong);
    }

    bool fail(const std::string& what) {
        ADD_FAILURE() << what << ", mode " << qPrintable(rawValue(engine.mode.value())) << ", NULL "
                      << engine.nullEnabled.value();
        return false;
    }

    Tally& _tally;
    bool _log = false;
    std::vector<int> _lanes;
    std::array<Lane, MIDIChannelMapping::controllerCount> _lane;
    Uptime _assertedAt = distantPast; // when the last thing was done upon which the engine asserts
    Uptime _dumpedAt = distantPast;
    Uptime _nullAt = distantPast;
    bool _isOutputIn = true;
    bool _tellsLocates = true; // the tape, by a full frame
    TakeCheck _takeCheck;
    QUuid _take; // recorded or waiting
    Signal<const ConsoleChange&>::Connection _consoleListener;
    QPropertyNotifier _takeNotifier;
    QPropertyNotifier _rollNotifier;
};

/// A failure names its seed; TESSIK_SEED=n runs that one alone and tells what is done.
TEST(TruthToTheDesk, DeskModelAndPassAgreeWheneverTheHandsRest) {
    const int only = qEnvironmentVariableIntValue("TESSIK_SEED");
    const std::uint32_t first = only > 0 ? std::uint32_t(only) : 1;
    const std::uint32_t last = only > 0 ? std::uint32_t(only) : seedCount;
    Tally tally;
    for (std::uint32_t seed = first; seed <= last; ++seed) {
        SCOPED_TRACE("TESSIK_SEED=" + std::to_string(seed));
        if (!Session(seed, tally).play()) break;
    }
    if (only > 0 || HasFailure()) return;
    tally.expectEach(seedCount);
}

} // namespace
} // namespace tessik::test
