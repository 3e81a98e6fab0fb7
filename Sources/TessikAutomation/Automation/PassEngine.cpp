#include "TessikAutomation/Automation/PassEngine.h"

#include <cmath>

namespace tessik {

using namespace std::chrono_literals;

namespace {
constexpr Uptime tickInterval = 5ms;
}

PassEngine::PassEngine(ConsoleModel& consoleModel, MTCClock& mtcClock, MIDIOutputManager& midiOutputManager,
                       const SnapshotStore& snapshotStore, const UptimeClock& uptime, WallClock wallClock)
    : _consoleModel(consoleModel),
      _mtcClock(mtcClock),
      _snapshotStore(snapshotStore),
      _uptime(uptime),
      _wallClock(std::move(wallClock)),
      _tape(mtcClock),
      _output(consoleModel, midiOutputManager, uptime) {
    for (QTimer* timer : {&_timer, &_edgeTimer}) {
        timer->setTimerType(Qt::PreciseTimer);
        timer->callOnTimeout([this] { tick(); });
    }
    _timer.setInterval(std::chrono::duration_cast<std::chrono::milliseconds>(tickInterval));
    _edgeTimer.setSingleShot(true);
    _modeNotifier = mode.addNotifier([this] { noteModeChange(); });
    // A desk chosen while the tape rolls has been told nothing yet.
    _destinationNotifier =
        midiOutputManager.port.connectedDestinationID.addNotifier([this] { _isAssertionDue = true; });
    _consoleModel.onChange = [this](const ConsoleChange& change) {
        _changes.push_back(change);
        if (_mode == AutomationMode::off) consumeChanges();
    };
    _mtcClock.onFullFrame = [this] { noteFullFrame(); };
}

int PassEngine::unsyncedChannelCount() const {
    const ConsoleModel::Channels channels = _consoleModel.allVisibleChannels();
    return int(std::count_if(channels.begin(), channels.end(),
                             [](const ChannelState* channel) { return channel->lastUpdate.value() == distantPast; }));
}

void PassEngine::tick() {
    if (_mode == AutomationMode::off) return;
    const Uptime now = _uptime.now();
    consumeChanges();
    settleTake();
    switch (_tape.follow(now)) {
    case TapeFollower::Event::none: break;
    case TapeFollower::Event::started: beginRoll(); break;
    case TapeFollower::Event::resumed: resumeRoll(); break;
    case TapeFollower::Event::stopped: endRoll(); break;
    case TapeFollower::Event::jumped:
        endRoll();
        beginRoll();
        break;
    }
    if (!_tape.isRolling() && !_tape.mayResume(now)) _suspendedMode.reset();
    isRolling = _tape.isRolling();
    const std::optional<TimecodePosition> at = position();
    const std::optional<AutomationPass>& pass = selectedPass.value();
    hasFrameRateMismatch = needsPass(_mode) && pass && at && at->frameRate != pass->frameRate;
    if (_tape.isRolling()) play(now);
    if (_recorder.isRecording()) recordedEventCount = _recorder.eventCount();
    const std::optional<std::int64_t> frames = at ? std::optional(at->totalFrames()) : std::nullopt;
    if (_nullsStale || frames != _lastNullRefreshFrames) refreshNullTargets();
    armEdgeTimer(now);
}

/// The playback half of the lateness is the wait for the next tick: so one comes with the frame's edge.
void PassEngine::armEdgeTimer(Uptime now) {
    if (!_tape.isRolling() || !needsPass(_mode)) return;
    const std::optional<Uptime> edge = _mtcClock.instant(std::floor(_tape.frame()) + 1);
    if (edge && *edge > now && *edge < now + tickInterval)
        _edgeTimer.start(std::chrono::ceil<std::chrono::milliseconds>(*edge - now));
}

// ---- modes and selection

void PassEngine::noteModeChange() {
    if (mode.value() == _mode) return; // the engine's own doing
    consumeChanges();
    settleTake();
    if (_recorder.isRecording()) endTake();
    _mode = mode.value();
    abandonRoll();
    if (_mode == AutomationMode::off) {
        _timer.stop();
        _edgeTimer.stop();
        isRolling = false;
        hasFrameRateMismatch = false;
    } else if (!_timer.isActive()) {
        _timer.start();
    }
    if (nullEnabled.value()) setNullEnabled(needsPass(_mode));
}

/// What rolls is taken up anew at the next tick, from the start of a roll on.
void PassEngine::abandonRoll() {
    _tape.interrupt();
    _suspendedMode.reset();
}

void PassEngine::noteFullFrame() {
    if (!_tape.isRolling()) return;
    consumeChanges();
    settleTake();
    endRoll();
    abandonRoll();
}

void PassEngine::setSelectedPass(const std::optional<AutomationPass>& pass) {
    _index = pass ? PassIndex(pass->events) : PassIndex();
    selectedPass = pass;
    _hasAssertedInitialState = false;
    _nullsStale = true;
}

void PassEngine::select(const std::optional<AutomationPass>& pass) {
    consumeChanges();
    if (needsPass(_mode)) {
        settleTake();
        endRoll();
        abandonRoll();
    }
    setSelectedPass(pass);
    if (!pass) return;
    applyBaselineToConsole();
    refreshNullTargets();
}

void PassEngine::noteSessionReplaced() {
    consumeChanges();
    settleTake();
    endRoll();
    abandonRoll();
    setSelectedPass(std::nullopt);
    _rides.clear();
    if (nullEnabled.value()) setNullEnabled(false);
}

std::optional<QList<ChannelSnapshot>> PassEngine::baselineState() const {
    const std::optional<AutomationPass>& pass = selectedPass.value();
    if (pass && pass->initialState) return pass->initialState;
    const std::optional<Snapshot> snapshot = _snapshotStore.defaultSnapshot();
    return snapshot ? std::optional(snapshot->channels) : std::nullopt;
}

ControllerValues PassEngine::baselineLanes() const {
    return laneValues(baselineState().value_or(QList<ChannelSnapshot>()));
}

void PassEngine::applyBaselineToConsole() {
    const ControllerValues baseline = baselineLanes();
    const Uptime now = _uptime.now();
    for (ChannelState* channel : _consoleModel.allVisibleChannels()) {
        const std::optional<int> fader = baseline[std::size_t(MIDIChannelMapping::faderCC(channel->kind))];
        const std::optional<int> switches = baseline[std::size_t(MIDIChannelMapping::switchCC(channel->kind))];
        if (!fader || !switches) continue;
        channel->setSwitches(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(*switches)));
        channel->lastUpdate = now;
        if (nullEnabled.value())
            channel->nullTarget = *fader;
        else
            channel->faderValue = *fader;
    }
}

// ---- rolls and takes

void PassEngine::beginRoll() {
    _suspendedMode.reset();
    _dumpAt.reset();
    _rides.clear();
    _nullsStale = true;
    _hasAssertedInitialState = false;
    if (records(_mode)) beginTake();
}

/// A dropout of the timecode is no stop: the take that it ended goes on.
void PassEngine::resumeRoll() {
    if (!_suspendedMode) return beginRoll();
    _mode = *std::exchange(_suspendedMode, std::nullopt);
    mode = _mode;
    _recorder.reopen();
    _hasAssertedInitialState = false;
    recordingPass = _recorder.takeAt(_offset).pass;
}

void PassEngine::endRoll() {
    if (!_recorder.isRecording()) return;
    const AutomationMode recorded = _mode;
    endTake();
    _suspendedMode = recorded;
    _mode = AutomationMode::read;
    mode = _mode;
}

void PassEngine::beginTake() {
    if (_mode == AutomationMode::update && !isPlayable()) return;
    if (const std::optional<AutomationPass> waiting = recordingPass.value()) {
        recordingPass = std::nullopt;
        onTakeSuperseded(*waiting);
    }
    PendingTake take = newTake();
    recordingPass = take.pass;
    recordedEventCount = 0;
    _recorder.begin(std::move(take), _mode == AutomationMode::write ? laneValues(*recordingPass.value()->initialState)
                                                                    : ControllerValues());
}

PendingTake PassEngine::newTake() const {
    PendingTake take;
    if (_mode == AutomationMode::update) {
        take.pass = *selectedPass.value();
        take.pass.sortEvents();
        take.rides = {.end = 0, .baseline = baselineState().value_or(QList<ChannelSnapshot>())};
    } else {
        const std::int64_t startFrame = std::int64_t(std::floor(_tape.frame()));
        take.pass.frameRate = _tape.rate();
        take.pass.startTimecode = TimecodePosition::fromTotalFrames(_tape.rate(), startFrame);
        take.pass.initialState.emplace();
        for (const ChannelState* channel : _consoleModel.allVisibleChannels())
            take.pass.initialState->append(ChannelSnapshot::of(*channel));
    }
    take.pass.id = QUuid::createUuid();
    take.pass.createdAt = _wallClock();
    take.pass.name = proposedName(take.pass.createdAt);
    return take;
}

void PassEngine::endTake() {
    _recorder.end();
    recordedEventCount = _recorder.eventCount();
    recordingPass = _recorder.takeAt(_offset).finished();
}

std::optional<AutomationPass> PassEngine::finishRecording(const QString& name, PassStore& store) {
    consumeChanges();
    settleTake();
    endRoll();
    std::optional<AutomationPass> pass = recordingPass.value();
    if (!pass) return std::nullopt;
    pass->name = name;
    pass->sortEvents();
    store.save(*pass);
    recordingPass = std::nullopt;
    setSelectedPass(pass);
    _rides.clear();
    _suspendedMode.reset();
    return pass;
}

void PassEngine::discardTake() {
    endRoll();
    recordingPass = std::nullopt;
    recordedEventCount = 0;
    _rides.clear();
    _suspendedMode.reset();
    _isAssertionDue = true;
    _nullsStale = true;
}

std::optional<PendingTake> PassEngine::pendingTake() const {
    if (_recorder.isRecording()) return _recorder.takeAt(_offset);
    if (const std::optional<AutomationPass>& waiting = recordingPass.value()) return PendingTake{.pass = *waiting};
    return std::nullopt;
}

} // namespace tessik
