#include "TessikKit/MIDI/MTCLock.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessik {
namespace {

constexpr double millisecond = 1e6;
constexpr double second = 1e9;

constexpr int maxAhead = 8;                      // quarter frames answered past the last one: two frames
constexpr double outlierBound = 5 * millisecond; // and four deviations at least
constexpr double firstDeviation = 3 * millisecond;
constexpr double regularBound = 6 * millisecond; // outliers that keep step with each other are a new beat
constexpr int outliersToRelock = 3;
constexpr int outliersToLose = 16; // two runs that fit nothing: a speed that the loop cannot follow
constexpr double slowest = 1.25;   // of the nominal period
constexpr double fastest = 0.8;
constexpr int errorWindow = 32; // quarter frames

/// From one piece to another that came later: 1 to 8.
int stepsTo(int piece, int from) { return ((piece - from - 1) & 7) + 1; }

double nominalPeriod(MTCFrameRate rate) { return second / (4 * realFramesPerSecond(rate)); }

} // namespace

void MTCLock::quarterFrame(Uptime stamp, int piece, const std::optional<TimecodePosition>& completed) {
    const Arrival previous = _recent.back();
    const Arrival arrival{double(stamp.count()), piece};
    std::shift_left(_recent.begin(), _recent.end(), 1);
    _recent.back() = arrival;
    _recentCount = std::min(_recentCount + 1, int(_recent.size()));

    if (isAcquired()) {
        const bool steppedBack = stepsTo(piece, previous.piece) == 7 && arrival.time - previous.time < 4 * _period;
        _descending = steppedBack ? _descending + 1 : 0;
        if (_descending >= 2)
            standStill(arrival.time);
        else
            track(arrival);
    }
    if (!completed) return;
    if (!isAcquired()) acquire(completed->frameRate);
    takeLabel(*completed);
}

std::optional<double> MTCLock::frame(Uptime at) {
    if (!_label) return _heldFrame;
    const double ahead = std::min<double>(maxAhead, (double(at.count()) - _time) / _period);
    _answered = std::max(_answered, double(_count) + ahead);
    return (_answered + double(_label->offset)) / 4;
}

std::optional<Uptime> MTCLock::instant(double frame) const {
    if (!_label) return std::nullopt;
    return Uptime(std::llround(_time + (frame * 4 - double(_label->offset + _count)) * _period));
}

/// The first run has completed, so the rate is known: its quarter frames start the loop.
void MTCLock::acquire(MTCFrameRate rate) {
    _nominal = _period = nominalPeriod(rate);
    const auto first = _recent.end() - _recentCount;
    start(*first, 0);
    std::for_each(first + 1, _recent.end(), [this](const Arrival& arrival) { track(arrival); });
}

void MTCLock::lose() {
    MTCLock fresh;
    fresh._recent = _recent;
    fresh._recentCount = _recentCount;
    *this = fresh;
}

void MTCLock::start(const Arrival& arrival, std::int64_t count) {
    _time = arrival.time;
    _piece = arrival.piece;
    _count = count;
    _accepted = 1;
    _widenedAt = arrival.time;
    _meanError = 0;
    _variance = std::pow(firstDeviation, 2);
    _outliers = _regularOutliers = 0;
}

void MTCLock::track(const Arrival& arrival) {
    const int steps = stepsTo(arrival.piece, _piece);
    const double predicted = _time + steps * _period;
    const double error = arrival.time - predicted;
    if (std::abs(error) > std::max(outlierBound, 4 * std::sqrt(_variance))) return noteOutlier(arrival);
    _outliers = _regularOutliers = 0;

    // 3 Hz after a start, 1 Hz later; of the first quarter frames the line of least squares.
    const double n = ++_accepted;
    const double age = (arrival.time - _widenedAt) / second;
    const double bandwidth = 1 + 2 * std::exp(-3 * age);
    const double w = 2 * std::numbers::pi * bandwidth * _period / second;
    const double phaseGain = std::min(1.0, std::max(std::numbers::sqrt2 * w, 2 * (2 * n - 1) / (n * (n + 1))));
    const double periodGain = std::min(1.0, std::max(w * w, 6 / (n * (n + 1))));
    _time = predicted + phaseGain * error;
    _period = std::clamp(_period + periodGain * error / steps, fastest * _nominal, slowest * _nominal);
    _count += steps;
    _piece = arrival.piece;

    const double weight = std::max(1.0 / errorWindow, 1 / n);
    _meanError += weight * (error - _meanError);
    _variance += weight * (std::pow(error - _meanError, 2) - _variance);
    const bool lagging = std::abs(_meanError) > std::max(0.5 * millisecond, std::sqrt(_variance));
    if (lagging && _accepted > errorWindow) _widenedAt = arrival.time;
}

void MTCLock::noteOutlier(const Arrival& arrival) {
    const Arrival previous = _outlierRun.back();
    std::shift_left(_outlierRun.begin(), _outlierRun.end(), 1);
    _outlierRun.back() = arrival;
    const double expected = previous.time + stepsTo(arrival.piece, previous.piece) * _period;
    const bool regular = _outliers > 0 && std::abs(arrival.time - expected) < regularBound;
    _regularOutliers = regular ? _regularOutliers + 1 : 1;
    if (++_outliers == outliersToLose) return lose();
    if (_regularOutliers == outliersToRelock) relock();
}

/// The quarter frames keep step, but with another beat than the loop's: it starts again on theirs. The count goes on
/// with the pieces or, where they jumped too, by the time gone by; after a silence longer than is bridged, the next
/// completed run says where the tape is.
void MTCLock::relock() {
    const std::array<Arrival, 3> arrivals = _outlierRun;
    const double gone = (arrivals.front().time - _time) / _period;
    if (gone > maxAhead) standStill(arrivals.front().time);
    const int steps = stepsTo(arrivals.front().piece, _piece);
    const std::int64_t byTime = std::max<std::int64_t>(1, std::llround(gone));
    start(arrivals.front(), _count + (std::abs(steps - gone) < 1.5 ? steps : byTime));
    std::for_each(arrivals.begin() + 1, arrivals.end(), [this](const Arrival& arrival) { track(arrival); });
}

void MTCLock::standStill(double time) {
    if (!_label) return;
    _heldFrame = frame(Uptime(std::llround(time)));
    _label.reset();
    _candidate.reset();
    _answered = -std::numeric_limits<double>::infinity();
}

void MTCLock::takeLabel(TimecodePosition completed) {
    if (!_label && _outliers > 0) return; // the count does not hold yet
    completed.addFrames(-2);              // as it was when the first piece was sent
    const std::int64_t count = _outliers > 0 ? _count + stepsTo(7, _piece) : _count;
    const Label label{completed.frameRate, 4 * completed.totalFrames() - (count - 7)};
    if (label == _label) {
        _candidate.reset();
        return;
    }
    // Two labels are left out at the start of a minute, but for every tenth; this is no jump.
    const bool labelsDropped = label.rate == MTCFrameRate::fps30Drop && _label &&
                               label == Label{_label->rate, _label->offset + 2 * 4} && completed.minutes % 10 != 0 &&
                               completed.seconds == 0 && completed.frames < 4;
    if (!_label || labelsDropped || label == _candidate)
        adopt(label);
    else
        _candidate = label;
}

void MTCLock::adopt(const Label& label) {
    _label = label;
    _candidate.reset();
    _nominal = nominalPeriod(label.rate);
    _period = std::clamp(_period, fastest * _nominal, slowest * _nominal);
}

} // namespace tessik
