#include "TessikAutomation/Automation/TapeFollower.h"

#include <algorithm>
#include <cmath>

namespace tessik {

using namespace std::chrono_literals;

namespace {

constexpr Uptime resumeWithin = 2s;
constexpr Uptime toldWithin = 1s; // finding a tape's position takes two runs and part of a third, on a slow tape too
constexpr double resumeTolerance = 0.25; // seconds before where it stood, or beyond where it would be at full speed
constexpr double jumpBack = 2;           // frames
constexpr double jumpAhead = 1;          // seconds beyond the elapsed time

double seconds(Uptime time) { return std::chrono::duration<double>(time).count(); }

} // namespace

TapeFollower::Event TapeFollower::follow(Uptime now) {
    if (!_clock.isRunning.value()) {
        if (!_isRolling) return Event::none;
        _isRolling = false;
        _mayResume = true;
        return Event::stopped;
    }
    const std::optional<double> answer = _clock.frame(now);
    if (!answer || !(_isRolling || _clock.isTelling())) return Event::none;
    const MTCFrameRate rate = *_clock.rate();
    const bool wasRolling = std::exchange(_isRolling, true);
    const double frame = unwrapped(*answer, rate);
    const bool isBack = frame <= _frame - jumpBack;
    const bool isAhead = frame - _frame > (seconds(now - _at) + jumpAhead) * realFramesPerSecond(_rate);
    const bool goesOn = rate == _rate && (wasRolling ? !isBack && !isAhead : isWhereItShouldBe(now, frame));
    _rate = rate;
    if (goesOn) {
        take(now, std::max(frame, _frame));
        return wasRolling ? Event::none : Event::resumed;
    }
    _isStanding = false;
    _stood = 0;
    take(now, *answer);
    return wasRolling ? Event::jumped : Event::started;
}

void TapeFollower::interrupt() { _isRolling = _mayResume = false; }

double TapeFollower::frameAt(Uptime stamp) const {
    return std::max(_stood, _anchorFrame + double((stamp - _anchorAt).count()) * _framesPerNanosecond);
}

void TapeFollower::take(Uptime now, double frame) {
    if (_isStanding) _stood = _frame;
    _frame = frame;
    _isStanding = !_clock.isTelling();
    if (_isStanding) return; // the old anchor holds
    _knownUntil = _clock.toldUntil() + Uptime(std::llround(2e9 / realFramesPerSecond(_rate)));
    _isStanding = now > _knownUntil;
    _at = std::min(now, _knownUntil);
    // The clock's answers never run backwards; its predictions of the frame's two edges are more accurate.
    const double edge = std::floor(frame);
    const Uptime from = *_clock.instant(edge);
    const Uptime to = *_clock.instant(edge + 1);
    _anchorFrame = edge;
    _anchorAt = from;
    _framesPerNanosecond = 1 / double((to - from).count());
}

/// The clock's answer, which starts over at midnight, on the scale of the roll.
double TapeFollower::unwrapped(double frame, MTCFrameRate rate) const {
    const double day = double(labelsPerDay(rate));
    return rate == _rate ? frame + day * std::round((_frame - frame) / day) : frame;
}

bool TapeFollower::mayResume(Uptime now) const {
    const Uptime back = _clock.quarterFramesSince();
    return _mayResume && (back > _at ? back : now) - _at <= resumeWithin && now - _at <= resumeWithin + toldWithin;
}

bool TapeFollower::isWhereItShouldBe(Uptime now, double frame) const {
    if (!mayResume(now)) return false;
    const double perSecond = realFramesPerSecond(_rate);
    const Uptime back = std::max(_clock.quarterFramesSince(), _at);
    const double hadItGoneOn = std::max(frameAt(now), _frame + seconds(now - _at) * perSecond);
    return *_clock.instant(_frame - resumeTolerance * perSecond) <= back &&
           frame <= hadItGoneOn + resumeTolerance * perSecond;
}

} // namespace tessik
