// The part of the pass engine that answers the console, plays, and leads hands to the automation.
#include "TessikAutomation/Automation/PassEngine.h"

#include <algorithm>
#include <cmath>

namespace tessik {

using namespace std::chrono_literals;
using Urgency = MIDIOutputManager::Urgency;

namespace {

constexpr Uptime dumpQuiet = 500ms;

bool isFader(int cc) { return cc < MIDIChannelMapping::switchCCOffset; }

} // namespace

// ---- what the console does

void PassEngine::consumeChanges() {
    for (const ConsoleChange& change : std::exchange(_changes, {}))
        consume(change);
    for (const int cc : std::exchange(_owed, {}))
        if (isPlaying()) _output.putBack(cc, output(cc));
    for (const int cc : std::exchange(_covered, {}))
        showHand(cc);
}

void PassEngine::consume(ConsoleChange change) {
    if (!isFader(change.cc)) // without the meaningless bits
        change.value =
            MIDIChannelMapping::encodeSwitchByte(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(change.value)));
    const bool isEcho = _output.isEcho(change);
    const std::optional<int> laneBefore = _output.noteChange(change);
    std::optional<int> faderBefore;
    if (change.origin == ChangeOrigin::desk && isFader(change.cc))
        faderBefore = _hands.moved(change.stamp, change.cc, isEcho ? std::nullopt : std::optional(change.value));
    if (change.origin == ChangeOrigin::dump) _hands.dumped(change.stamp, change.cc);
    if (!_output.visibleChannel(change.cc)) return;
    std::erase(_owed, change.cc);
    std::erase(_covered, change.cc);

    const AutomationMode taking = isRecording() ? _mode : _suspendedMode.value_or(AutomationMode::off);
    const bool hasAutomation = _cursor.values()[std::size_t(change.cc)].has_value();
    // Where UPDATE has no automation to restore, it leaves what was set, even by a dump.
    if (taking == AutomationMode::write || (taking == AutomationMode::update && !hasAutomation))
        _recorder.move(change.stamp, change.cc, change.value);
    switch (change.origin) {
    case ChangeOrigin::desk:
    case ChangeOrigin::screen:
        if (isPlaying() && hasAutomation) answerHand(change, faderBefore, laneBefore);
        return;
    case ChangeOrigin::dump:
        if (isPlaying()) takeBackRides(change.stamp);
        break;
    case ChangeOrigin::recall:
    case ChangeOrigin::zero:
        // It holds, and is heard, until the channel's next event.
        if (_mode == AutomationMode::update && isPlaying() && hasAutomation) {
            _rides.replace(change.stamp, change.cc, change.value);
            _recorder.move(change.stamp, change.cc, change.value);
        }
        if (_output.isScreenHeld() && isFader(change.cc)) _covered.push_back(change.cc);
        break;
    }
    _nullsStale = true;
}

/// A hand took the desk away from the automation. In UPDATE that is a ride; under NULL the hand is looking for the
/// automation, so the desk is put back; in plain READ the hand has the channel until its next event.
void PassEngine::answerHand(const ConsoleChange& change, std::optional<int> faderBefore,
                            std::optional<int> laneBefore) {
    const int cc = change.cc;
    const bool isScreen = change.origin == ChangeOrigin::screen;
    if (_mode == AutomationMode::update) {
        bool isRide = true;
        if (!isFader(cc)) {
            isRide = laneBefore && laneBefore != change.value;
            if (isRide) _rides.press(change.stamp, cc, *laneBefore, change.value);
        } else if (isScreen) {
            _rides.setOutput(change.stamp, cc, change.value, *_cursor.values()[std::size_t(cc)]);
        } else {
            const std::optional<int> start = rideStart(cc, faderBefore);
            isRide = start && start != _hands.value(cc);
            if (isRide) _rides.moveBy(change.stamp, cc, change.value - *start);
        }
        if (isRide) _recorder.move(change.stamp, cc, output(cc));
        _nullsStale = true;
    } else if (isScreen || !_output.isScreenHeld() || !isFader(cc)) {
        return;
    }
    _owed.push_back(cc);
}

/// Where the hand's movement begins to count, or none if it does not yet. Under NULL, the way to the target is no ride:
/// a hand that meets the target is there, one that passes it began there.
std::optional<int> PassEngine::rideStart(int faderCC, std::optional<int> faderBefore) {
    const std::size_t lane = std::size_t(faderCC);
    const std::optional<int> hand = _hands.value(faderCC);
    if (!hand || !_output.isScreenHeld() || _hasMet[lane]) return faderBefore;
    const int target = output(faderCC);
    const bool isThere = ChannelState::nullMatch(*hand, target) == ChannelState::NullMatch::matched;
    const bool hasPassed = faderBefore && (*faderBefore < target) != (*hand < target);
    _hasMet[lane] = isThere || hasPassed;
    if (isThere) return hand;
    return hasPassed ? std::optional(target) : std::nullopt;
}

void PassEngine::takeBackRides(Uptime dumpStamp) {
    _dumpAt = dumpStamp;
    const Uptime begunAt = dumpStamp - DeskHands::dumpWindow;
    std::vector<int> lanes = _rides.takeBackSince(begunAt);
    if (lanes.empty() || !isRecording()) return;
    const std::int64_t from = offsetOf(_tape.frameAt(begunAt));
    _recorder.takeBack(from + 1, lanes);
    // Restore what was true of it: rides that the take lacks, and the automation under earlier ones.
    std::erase_if(lanes, [this](int cc) { return !_recorder.has(cc) && !_rides.isRidden(cc); });
    PassCursor again(_index);
    again.seek(baselineLanes(), from);
    for (const int cc : lanes)
        if (const std::optional<int> automation = again.values()[std::size_t(cc)]; automation && !_recorder.has(cc))
            _recorder.record(from, cc, _rides.output(cc, *automation));
    again.advance(_offset, [&](const LaneEvent& event) {
        if (std::find(lanes.begin(), lanes.end(), event.cc) == lanes.end()) return;
        _rides.release(event.cc);
        _recorder.record(event.frameOffset, event.cc, _rides.output(event.cc, event.value));
    });
}

void PassEngine::settleTake() {
    if (!isRecording()) return;
    _recorder.settle(_tape.knownUntil(), [this](Uptime stamp) { return offsetOf(_tape.frameAt(stamp)); });
}

// ---- playback

bool PassEngine::isPlayable() const {
    const std::optional<AutomationPass>& pass = playedPass.value();
    return needsPass(_mode) && pass && pass->frameRate == _tape.rate();
}

/// Into the pass that plays, or into the take if none does.
std::int64_t PassEngine::offsetOf(double frame) const {
    const std::optional<AutomationPass>& pass = needsPass(_mode) ? playedPass.value() : recordingPass.value();
    const std::int64_t length = needsPass(_mode) ? _index.lastOffset() : _offset;
    return pass ? pass->offsetOf(std::int64_t(std::floor(frame)), length) : 0;
}

/// Only for a lane for which the automation has a value.
int PassEngine::output(int cc) const { return _rides.output(cc, *_cursor.values()[std::size_t(cc)]); }

void PassEngine::play(Uptime now) {
    if (_dumpAt && now - *_dumpAt > dumpQuiet) {
        _dumpAt.reset();
        _isAssertionDue = true;
    }
    _offset = offsetOf(_tape.frame());
    if (!isPlayable()) return;
    if (!std::exchange(_hasAssertedInitialState, true)) {
        _cursor.seek(baselineLanes(), _offset);
        return assertOutputs();
    }
    _cursor.advance(_offset, [this](const LaneEvent& event) {
        _rides.release(event.cc);
        _output.play(event.cc, output(event.cc), Urgency::playback);
        recordRide(event.frameOffset, event.cc);
    });
    if (_isAssertionDue) assertOutputs();
}

/// Sends the state with which the pass starts plus every event up to here, as one assertion.
void PassEngine::assertOutputs() {
    _isAssertionDue = false;
    ControllerValues outputs;
    for (std::size_t cc = 0; cc < outputs.size(); ++cc) {
        if (!_cursor.values()[cc]) continue;
        outputs[cc] = output(int(cc));
        recordRide(_offset, int(cc));
    }
    _output.assertState(outputs);
    _nullsStale = true;
}

/// A lane ridden in this take keeps recording the output, even where only the automation moves.
void PassEngine::recordRide(std::int64_t offset, int cc) {
    if (isRecording() && _recorder.has(cc)) _recorder.record(offset, cc, output(cc));
}

// ---- NULL

void PassEngine::setNullEnabled(bool enabled) {
    consumeChanges();
    nullEnabled = enabled;
    if (!enabled) {
        clearNullTargets();
        _output.releaseScreen();
        return;
    }
    if (!needsPass(_mode)) return;
    _output.holdScreen();
    _isAssertionDue = true; // a fader that a hand has taken returns to the automation
    _hasMet.reset();
    showHands();
    refreshNullTargets();
}

/// On screen, where it is known.
void PassEngine::showHand(int faderCC) {
    if (const std::optional<int> hand = _hands.value(faderCC)) _consoleModel.shown(faderCC, *hand);
}

void PassEngine::showHands() {
    for (const ChannelState* channel : _consoleModel.allVisibleChannels())
        showHand(MIDIChannelMapping::faderCC(channel->kind));
}

/// It cleared the targets too.
void PassEngine::noteScreenZeroed() {
    consumeChanges();
    if (_output.isScreenHeld()) showHands();
    _nullsStale = true;
}

void PassEngine::clearNullTargets() {
    for (ChannelState* channel : _consoleModel.allVisibleChannels())
        _consoleModel.setNullTarget(*channel, std::nullopt);
}

/// Where the tape is, as a label: from the lock while it rolls, else from the clock.
std::optional<TimecodePosition> PassEngine::position() const {
    if (_tape.isRolling())
        return TimecodePosition::fromTotalFrames(_tape.rate(), std::int64_t(std::floor(_tape.frame())));
    return _mtcClock.currentPosition.value();
}

void PassEngine::refreshNullTargets() {
    const std::optional<TimecodePosition> at = position();
    _lastNullRefreshFrames = at ? std::optional(at->totalFrames()) : std::nullopt;
    _nullsStale = false;
    const std::optional<AutomationPass>& pass = playedPass.value();
    if (!nullEnabled.value() || !needsPass(_mode) || !pass) return;
    if (at && at->frameRate != pass->frameRate) return clearNullTargets();
    const bool plays = isPlaying();
    ControllerValues automation = _cursor.values();
    if (!plays) {
        automation = baselineLanes();
        _index.applyUpTo(at ? pass->offsetOf(at->totalFrames(), _index.lastOffset()) : 0, automation);
    }
    for (ChannelState* channel : _consoleModel.allVisibleChannels()) {
        const int cc = MIDIChannelMapping::faderCC(channel->kind);
        const std::optional<int> value = automation[std::size_t(cc)];
        if (!value) continue;
        const int target = plays ? output(cc) : *value;
        _consoleModel.setNullTarget(*channel, target);
        const std::optional<int> hand = _hands.value(cc);
        if (hand && ChannelState::nullMatch(*hand, target) == ChannelState::NullMatch::matched)
            _hasMet.set(std::size_t(cc));
    }
}

} // namespace tessik
