#include "TessikAutomation/Automation/PassEngine.h"

#include <cmath>

namespace tessik {

using namespace std::chrono_literals;

namespace {
constexpr Uptime tickInterval = 5ms;
constexpr Uptime stopsWithin = 3s; // of a machine that obeys, as timecode shows it
} // namespace

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
    // A desk chosen while the tape rolls has been told nothing yet; nor have channels that appeared with another
    // console size.
    const auto assertAnew = [this] { _isAssertionDue = _nullsStale = true; };
    _destinationNotifier = midiOutputManager.port.connectedDestinationID.addNotifier(assertAnew);
    _sizeNotifier = consoleModel.modelSize.addNotifier(assertAnew);
    waitingTake.follow([this] { return isRecording() ? std::nullopt : recordingPass.value(); });
    playedPass.follow([this] {
        const std::optional<AutomationPass>& take = waitingTake.value();
        return take && !isComparing.value() ? take : selectedPass.value();
    });
    _playedNotifier = playedPass.addNotifier([this] { followPlayedPass(); });
    _consoleListener = _consoleModel.changed.connect([this](const ConsoleChange& change) {
        _changes.push_back(change);
        if (_mode == AutomationMode::off) consumeChanges();
    });
    _zeroListener = _consoleModel.screenZeroed.connect([this] { noteScreenZeroed(); });
    _fullFrameListener = _mtcClock.fullFrame.connect([this] { noteFullFrame(); });
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
    const std::optional<AutomationPass>& pass = playedPass.value();
    hasFrameRateMismatch = needsPass(_mode) && pass && at && at->frameRate != pass->frameRate;
    if (_tape.isRolling()) {
        settleTake(); // before the playback below, in case timecode was silent until now
        play(now);
    }
    if (isRecording()) recordedEventCount = _recorder.eventCount();
    const bool hasMoved = at ? _lastNullRefreshFrames != at->totalFrames() : _lastNullRefreshFrames.has_value();
    if (_nullsStale || hasMoved) refreshNullTargets();
    armEdgeTimer(now);
}

/// Waiting for the next tick is half of playback's lateness, so one comes exactly at the frame's edge.
void PassEngine::armEdgeTimer(Uptime now) {
    if (!_tape.isRolling() || !needsPass(_mode)) return;
    const std::optional<Uptime> edge = _mtcClock.instant(std::floor(_tape.frame()) + 1);
    if (edge && *edge > now && *edge < now + tickInterval)
        _edgeTimer.start(std::chrono::ceil<std::chrono::milliseconds>(*edge - now));
}

// ---- modes and selection

void PassEngine::noteModeChange() {
    if (mode.value() == _mode) return; // the engine's own change
    consumeChanges();
    settleTake();
    if (isRecording()) endTake();
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
    applyNull();
}

/// As far as the mode allows.
void PassEngine::applyNull() {
    if (nullEnabled.value()) setNullEnabled(needsPass(_mode));
}

/// The next tick takes up a tape that rolls as if it had just started.
void PassEngine::abandonRoll() {
    _tape.interrupt();
    _suspendedMode.reset();
}

void PassEngine::noteFullFrame() {
    if (_tape.isRolling()) {
        consumeChanges();
        settleTake();
        endRoll();
    }
    abandonRoll();
}

/// A take that is given its name plays on.
void PassEngine::followPlayedPass() {
    const std::optional<AutomationPass>& pass = playedPass.value();
    const bool playsOn = pass && _indexed && pass->id == _indexed->id && pass->events.isSharedWith(_indexed->events);
    _indexed = pass;
    if (playsOn) return;
    _index = pass ? PassIndex(pass->events) : PassIndex();
    _hasAssertedInitialState = false;
    _nullsStale = true;
}

void PassEngine::leaveModeWithoutPass() {
    if (needsPass(_mode) && !playedPass.value()) mode = AutomationMode::off;
}

void PassEngine::select(const std::optional<AutomationPass>& pass) {
    consumeChanges();
    if (needsPass(_mode)) {
        settleTake();
        endRoll();
        abandonRoll();
    }
    if (!pass) isComparing = false;
    selectedPass = pass;
    isComparing = pass && waitingTake.value();
    _hasAssertedInitialState = false;
    _nullsStale = true;
    if (!pass) return leaveModeWithoutPass();
    applyBaselineToConsole();
    refreshNullTargets();
}

void PassEngine::compare(bool withSelected) {
    if (!waitingTake.value() || withSelected == isComparing.value()) return;
    consumeChanges();
    abandonRoll();
    isComparing = withSelected;
}

void PassEngine::noteSessionReplaced() {
    consumeChanges();
    settleTake();
    endRoll();
    abandonRoll();
    isComparing = false;
    selectedPass = std::nullopt;
    _rides.clear();
    if (nullEnabled.value()) setNullEnabled(false);
    leaveModeWithoutPass();
}

std::optional<QList<ChannelSnapshot>> PassEngine::baselineState() const {
    const std::optional<AutomationPass>& pass = playedPass.value();
    if (pass && pass->initialState) return pass->initialState;
    const std::optional<Snapshot> snapshot = _snapshotStore.defaultSnapshot();
    return snapshot ? std::optional(snapshot->channels) : std::nullopt;
}

ControllerValues PassEngine::baselineLanes() const {
    return laneValues(baselineState().value_or(QList<ChannelSnapshot>()));
}

void PassEngine::applyBaselineToConsole() {
    const ControllerValues baseline = baselineLanes();
    for (ChannelState* channel : _consoleModel.allVisibleChannels()) {
        const int faderCC = MIDIChannelMapping::faderCC(channel->kind);
        const int switchCC = MIDIChannelMapping::switchCC(channel->kind);
        const std::optional<int> fader = baseline[std::size_t(faderCC)];
        const std::optional<int> switches = baseline[std::size_t(switchCC)];
        if (!fader || !switches) continue;
        _consoleModel.played(switchCC, *switches, nullEnabled.value());
        if (nullEnabled.value())
            _consoleModel.setNullTarget(*channel, *fader);
        else
            _consoleModel.shown(faderCC, *fader);
    }
}

// ---- rolls and takes

void PassEngine::beginRoll() {
    _suspendedMode.reset();
    _dumpAt.reset();
    _rides.clear();
    _hasMet.reset();
    _nullsStale = true;
    _hasAssertedInitialState = false;
    if (records(_mode)) beginTake();
}

/// A dropout of the timecode is not a stop: the take that it ended continues.
void PassEngine::resumeRoll() {
    if (!_suspendedMode) return beginRoll();
    _mode = *std::exchange(_suspendedMode, std::nullopt);
    mode = _mode;
    _isRecording = true;
    recordingPass = _recorder.takeAt(_offset).pass;
    if (isPlayable()) { // up to where it had got
        _cursor.seek(baselineLanes(), _offset);
        _hasAssertedInitialState = true;
    }
    _isAssertionDue = true;
    if (!needsPass(_mode)) applyNull(); // it was pressed in the meantime
}

void PassEngine::endRoll() {
    if (!isRecording()) return;
    const AutomationMode recorded = _mode;
    endTake();
    if (_uptime.now() > _stopSentAt + stopsWithin) _suspendedMode = recorded;
    _mode = AutomationMode::read;
    mode = _mode;
}

void PassEngine::noteStopSent() {
    _stopSentAt = _uptime.now();
    _suspendedMode.reset();
}

void PassEngine::beginTake() {
    if (_mode == AutomationMode::update && !isPlayable()) return;
    if (const std::optional<AutomationPass> waiting = waitingTake.value()) {
        if (_mode == AutomationMode::update && !isComparing.value()) selectedPass = waiting;
        recordingPass = std::nullopt;
        onTakeSuperseded(*waiting);
    }
    PendingTake take = newTake();
    const AutomationPass pass = take.pass;
    _recorder.begin(std::move(take),
                    _mode == AutomationMode::write ? laneValues(*pass.initialState) : ControllerValues());
    recordedEventCount = 0;
    _isRecording = true;
    recordingPass = pass;
}

PendingTake PassEngine::newTake() const {
    PendingTake take;
    if (_mode == AutomationMode::update) {
        take.pass = *playedPass.value();
        take.pass.sortEvents();
        take.rides = {.end = 0, .baseline = baselineState().value_or(QList<ChannelSnapshot>())};
    } else {
        const std::int64_t startFrame = std::int64_t(std::floor(_tape.frame()));
        take.pass.frameRate = _tape.rate();
        take.pass.startTimecode = TimecodePosition::fromTotalFrames(_tape.rate(), startFrame).withinDay();
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
    recordedEventCount = _recorder.eventCount();
    recordingPass = _recorder.takeAt(_offset).finished();
    isComparing = false;
    _isRecording = false;
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
    if (isComparing.value()) abandonRoll(); // otherwise it keeps playing
    selectedPass = pass;
    recordingPass = std::nullopt;
    isComparing = false;
    _rides.clear();
    _suspendedMode.reset();
    return pass;
}

void PassEngine::discardTake() {
    endRoll();
    recordingPass = std::nullopt;
    isComparing = false;
    recordedEventCount = 0;
    _rides.clear();
    abandonRoll();
    leaveModeWithoutPass();
}

bool PassEngine::restoreTake(const AutomationPass& take) {
    if (recordingPass.value()) return false;
    consumeChanges();
    abandonRoll();
    recordedEventCount = take.events.size();
    recordingPass = take;
    return true;
}

std::optional<PendingTake> PassEngine::pendingTake() const {
    if (isRecording()) return _recorder.takeAt(_offset);
    if (const std::optional<AutomationPass>& waiting = waitingTake.value()) return PendingTake{.pass = *waiting};
    return std::nullopt;
}

} // namespace tessik
