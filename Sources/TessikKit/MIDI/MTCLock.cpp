#include "TessikKit/MIDI/MTCLock.h"

#include <algorithm>
#include <cmath>

namespace tessik {
namespace {

constexpr int maxAhead = 8; // quarter frames answered past the last one: two frames
constexpr int runLength = 8;
constexpr int straysToCount = 3;         // in order: the pieces jumped
constexpr double shortestSilence = 75e6; // ns: of nine quarter frames at 30 a second, so that no wrong period fakes one
constexpr double reverseWithin = 4;      // periods

/// Steps from one piece to a later one: 1 to 8.
int stepsTo(int piece, int from) { return ((piece - from - 1) & 7) + 1; }

std::int64_t quarterFramesPerDay(MTCFrameRate rate) { return 4 * labelsPerDay(rate); }

} // namespace

void MTCLock::quarterFrame(Uptime stamp, int piece, const std::optional<TimecodePosition>& completed) {
    const double time = double(stamp.count());
    const bool isCounted = count(time, piece);
    _lastPiece = piece;
    _lastTime = time;
    if (!isCounted) return;
    if (isTelling())
        _loop.track({time, _count});
    else
        _loop.note({time, _count});
    if (completed && _unbroken >= runLength) takeLabel(*completed);
}

void MTCLock::stop() {
    _label.reset();
    _labelBefore.reset();
    _candidate.reset();
    _answeredRate.reset();
}

std::optional<MTCFrameRate> MTCLock::rate() const { return _answeredRate; }

std::optional<double> MTCLock::frame(Uptime at) {
    if (!_answeredRate) return std::nullopt;
    if (_label) answer(double(at.count()));
    const double day = double(quarterFramesPerDay(*_answeredRate));
    return (_answered - day * std::floor(_answered / day)) / 4;
}

void MTCLock::answer(double time) {
    const double count = std::min(_loop.countAt(time), double(_count + maxAhead));
    _answered = std::max(_answered, count + double(_label->offset));
}

std::optional<Uptime> MTCLock::instant(double frame) const {
    if (!_label) return std::nullopt;
    const double day = double(quarterFramesPerDay(_label->rate));
    double ahead = frame * 4 - double(_label->offset + _count);
    ahead -= day * std::round(ahead / day);
    return Uptime(std::llround(_loop.timeOf(double(_count) + ahead)));
}

/// Counts a quarter frame; false if it does not fit those before it.
bool MTCLock::count(double time, int piece) {
    const double elapsed = (time - _time) / _loop.period();
    const std::int64_t steps = stepsTo(piece, _piece);
    // The number closest to the elapsed time, among those that the piece allows.
    const std::int64_t stepsInTime = steps + 8 * std::max(0LL, std::llround((elapsed - double(steps)) / 8));
    const bool steppedBack = stepsTo(piece, _lastPiece) == 7 && time - _lastTime < reverseWithin * _loop.period();
    _descending = steppedBack ? _descending + 1 : 0;
    if (_unbroken == 0) { // the first of all
        _unbroken = 1;
    } else if (_descending >= 2) {
        standStill(time);
        _labelBefore.reset();
        return false;
    } else if (elapsed > maxAhead + 1 && time - _time > shortestSilence) {
        standStill(time);
        _count += stepsInTime;
        _mayHaveStood = _mayHaveStood || steps == 1;
        _unbroken = 1;
    } else if (steps == 1) {
        ++_count;
        ++_unbroken;
    } else if (isTelling() ? !_loop.isOutlier({time, _count + steps}) : std::abs(elapsed - double(steps)) < 1.5) {
        _count += steps;
        _unbroken = 1;
    } else if (!countStray(elapsed, piece)) {
        return false;
    }
    _strays = 0;
    _piece = piece;
    _time = time;
    return true;
}

/// A stray piece, or the pieces jumped: then the count advances by the elapsed time.
bool MTCLock::countStray(double elapsed, int piece) {
    _strays = _strays > 0 && stepsTo(piece, _lastPiece) == 1 ? _strays + 1 : 1;
    if (_strays < straysToCount) return false;
    _count += std::max(1LL, std::llround(elapsed));
    _unbroken = _strays;
    _candidate.reset();
    return true;
}

void MTCLock::standStill(double time) {
    if (_label) {
        answer(time);
        _labelBefore = std::exchange(_label, std::nullopt);
        _mayHaveStood = false;
    }
    _candidate.reset();
    _loop.forget();
}

void MTCLock::takeLabel(TimecodePosition completed) {
    completed.addFrames(-2); // as it was when the first piece was sent
    const Label label{completed.frameRate, 4 * completed.totalFrames() - (_count - 7)};
    if (_label && agree(*_label, label, completed)) {
        _candidate.reset();
        if (difference(*_label, label) != 0) adopt(label);
    } else if (_labelBefore && !_mayHaveStood && agree(*_labelBefore, label, completed)) {
        adopt(label); // it kept rolling
    } else if (_candidate && agree(*_candidate, label, completed)) {
        adopt(label);
    } else {
        _candidate = label;
    }
}

void MTCLock::adopt(const Label& label) {
    const bool wasTelling = isTelling();
    const std::optional<Label> known = _label ? _label : _labelBefore;
    const bool goesOn = known && known->rate == label.rate;
    if (!wasTelling) _loop.start(goesOn);
    _label = goesOn ? Label{label.rate, known->offset + difference(*known, label)} : label;
    _labelBefore.reset();
    _candidate.reset();
    _answeredRate = label.rate;
    const double now = double(_count + _label->offset);
    if (!goesOn || _answered > now + maxAhead) _answered = -std::numeric_limits<double>::infinity();
}

/// How much later the second label is for the same count, both at one rate; the shorter way around the day.
std::int64_t MTCLock::difference(const Label& from, const Label& to) {
    const std::int64_t day = quarterFramesPerDay(to.rate);
    const std::int64_t rest = (to.offset - from.offset) % day;
    return rest > day / 2 ? rest - day : rest < -day / 2 ? rest + day : rest;
}

/// Two labels are skipped at the start of a minute, except every tenth; this is not a jump.
bool MTCLock::agree(const Label& label, const Label& next, const TimecodePosition& nextSays) {
    if (label.rate != next.rate) return false;
    const std::int64_t difference = MTCLock::difference(label, next);
    const bool areLabelsDropped = next.rate == MTCFrameRate::fps30Drop && difference == 2 * 4 &&
                                  nextSays.minutes % 10 != 0 && nextSays.seconds == 0 && nextSays.frames < 4;
    return difference == 0 || areLabelsDropped;
}

} // namespace tessik
