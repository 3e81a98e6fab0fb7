#include "TessikAutomation/Automation/TapeFollower.h"

#include <algorithm>
#include <cmath>

namespace tessik {

using namespace std::chrono_literals;

namespace {

constexpr Uptime resumeWithin = 2s;
constexpr double resumeTolerance = 0.25; // seconds; a machine stopped by hand comes back later by half a second or more
constexpr double jumpAhead = 1;          // seconds beyond the time gone by

double seconds(Uptime time) { return std::chrono::duration<double>(time).count(); }

} // namespace

TapeFollower::Event TapeFollower::follow(Uptime now) {
    if (!_clock.isRunning.value()) {
        if (!_isRolling) return Event::none;
        _isRolling = false;
        _mayResume = true;
        return Event::stopped;
    }
    const std::optional<TimecodePosition> position = _clock.currentPosition.value();
    const std::optional<double> frame = _clock.frame(now);
    if (!position || !frame) return Event::none;
    if (!_isRolling) {
        const bool resumed = position->frameRate == _rate && isWhereItShouldBe(now, *frame);
        _isRolling = true;
        _rate = position->frameRate;
        take(now, *frame);
        return resumed ? Event::resumed : Event::started;
    }
    const double perSecond = realFramesPerSecond(_rate);
    const bool isBack = std::floor(*frame) < std::floor(_frame);
    const bool isAhead = *frame - _frame > (seconds(now - _at) + jumpAhead) * perSecond;
    const bool jumped = position->frameRate != _rate || isBack || isAhead;
    _rate = position->frameRate;
    take(now, *frame);
    return jumped ? Event::jumped : Event::none;
}

void TapeFollower::interrupt() { _isRolling = _mayResume = false; }

double TapeFollower::frameAt(Uptime stamp) const {
    return _anchorFrame + double((stamp - _anchorAt).count()) * _framesPerNanosecond;
}

Uptime TapeFollower::knownUntil() const {
    return _clock.lastQuarterFrameStamp() + Uptime(std::llround(2e9 / realFramesPerSecond(_rate)));
}

void TapeFollower::take(Uptime now, double frame) {
    _frame = frame;
    _at = std::min(now, knownUntil()); // without timecode the answer stands still
    // The clock's answers never run back; what it predicts of the frame's two edges is nearer the truth.
    const double edge = std::floor(frame);
    const std::optional<Uptime> from = _clock.instant(edge);
    const std::optional<Uptime> to = _clock.instant(edge + 1);
    const bool isKnown = from && to && *to > *from;
    _anchorFrame = isKnown ? edge : frame;
    _anchorAt = isKnown ? *from : _at;
    _framesPerNanosecond = isKnown ? 1 / double((*to - *from).count()) : realFramesPerSecond(_rate) / 1e9;
}

bool TapeFollower::mayResume(Uptime now) const { return _mayResume && now - _at <= resumeWithin; }

bool TapeFollower::isWhereItShouldBe(Uptime now, double frame) const {
    return mayResume(now) && std::abs(frame - frameAt(now)) <= resumeTolerance * realFramesPerSecond(_rate);
}

} // namespace tessik
