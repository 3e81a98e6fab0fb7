#include "TessikKit/MIDI/BeatLoop.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>

namespace tessik {
namespace {

constexpr double millisecond = 1e6;
constexpr double second = 1e9;

constexpr double outlierBound = 5 * millisecond;   // and at least four deviations
constexpr double maxDeviation = 14 * millisecond;  // of arrivals at the ends of the longest audio buffers
constexpr double usualPeriod = 10.5 * millisecond; // the gains are for this period even if a tape is slower
constexpr double regularBound = 6 * millisecond;   // outliers that keep step with each other form a new beat
constexpr int outliersToRelock = 3;
constexpr int outliersToRefit = 8; // of the last sixteen: the jitter or the speed has changed
constexpr std::uint32_t lastSixteen = 0xFFFF;
constexpr double shortest = 2 * millisecond; // period: four times the fastest rate's own speed
constexpr double longest = 50 * millisecond; // a fifth of the slowest
constexpr int errorWindow = 32;              // quarter frames
constexpr int beatsForPeriod = 16;

} // namespace

void BeatLoop::note(const Beat& beat) {
    std::shift_left(_recent.begin(), _recent.end(), 1);
    _recent.back() = beat;
    _size = std::min(_size + 1, int(_recent.size()));
}

std::span<const Beat> BeatLoop::recent(int most) const {
    return std::span(_recent).last(std::size_t(std::min(_size, most)));
}

void BeatLoop::start(bool keepsPeriod) { follow(recent(int(_recent.size())), keepsPeriod); }

void BeatLoop::follow(std::span<const Beat> beats, bool keepsPeriod) {
    keepsPeriod = keepsPeriod || int(beats.size()) < beatsForPeriod;
    const Line line = lineThrough(beats, keepsPeriod);
    _time = line.time;
    _count = beats.back().count;
    _period = line.period;
    _accepted = keepsPeriod ? errorWindow : line.fitting;
    _widenedAt = _time;
    _meanError = 0;
    const double variance = std::pow(std::min(line.deviation, maxDeviation), 2);
    _variance = keepsPeriod ? std::max(_variance, variance) : variance; // a few arrivals say little about the jitter
    _outliers = 0;
    _regularOutliers = 0;
}

/// The least-squares line, once through all beats and again without those far from it.
BeatLoop::Line BeatLoop::lineThrough(std::span<const Beat> beats, bool keepsPeriod) const {
    Line line{0, _period, 0, 0};
    std::array<double, 8 * runsKept> errors;
    double bound = std::numeric_limits<double>::infinity();
    for (const bool isFirst : {true, false}) {
        double n = 0, counts = 0, times = 0, countSquares = 0, products = 0;
        const Beat& last = beats.back();
        for (std::size_t i = 0; i < beats.size(); ++i) {
            if (!isFirst && errors[i] > bound) continue;
            const double count = double(beats[i].count - last.count);
            const double time = beats[i].time - last.time;
            ++n;
            counts += count;
            times += time;
            countSquares += count * count;
            products += count * time;
        }
        if (!keepsPeriod)
            line.period =
                std::clamp((products - counts * times / n) / (countSquares - counts * counts / n), shortest, longest);
        const double ahead = (times - counts * line.period) / n;
        line.time = last.time + ahead;
        line.fitting = int(n);
        double squares = 0;
        for (std::size_t i = 0; i < beats.size(); ++i) {
            const double count = double(beats[i].count - last.count);
            const double error = std::abs(beats[i].time - last.time - ahead - count * line.period);
            if (isFirst || errors[i] <= bound) squares += error * error;
            errors[i] = error;
        }
        line.deviation = std::sqrt(squares / n);
        if (!isFirst) break;
        std::array<double, 8 * runsKept> sorted = errors;
        const auto middle = sorted.begin() + std::ptrdiff_t(beats.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.begin() + std::ptrdiff_t(beats.size()));
        bound = std::max(outlierBound, 4 * 1.48 * *middle);
    }
    return line;
}

bool BeatLoop::isOutlier(const Beat& beat) const {
    return std::abs(beat.time - timeOf(double(beat.count))) > std::max(outlierBound, 4 * std::sqrt(_variance));
}

void BeatLoop::track(const Beat& beat) {
    note(beat);
    _outliers <<= 1;
    if (isOutlier(beat)) return noteOutlier(beat);
    _regularOutliers = 0;

    // 3 Hz after a start, 1 Hz later; for the first quarter frames, the least-squares line.
    const double steps = double(beat.count - _count);
    const double predicted = timeOf(double(beat.count));
    const double error = beat.time - predicted;
    const double n = ++_accepted;
    const double age = (beat.time - _widenedAt) / second;
    const double bandwidth = 1 + 2 * std::exp(-3 * age);
    const double w = 2 * std::numbers::pi * bandwidth * std::min(_period, usualPeriod) / second;
    const double phaseGain = std::min(1.0, std::max(std::numbers::sqrt2 * w, 2 * (2 * n - 1) / (n * (n + 1))));
    const double periodGain = std::min(1.0, std::max(w * w, 6 / (n * (n + 1))));
    _time = predicted + phaseGain * error;
    _period = std::clamp(_period + periodGain * error / steps, shortest, longest);
    _count = beat.count;

    const double weight = std::max(1.0 / errorWindow, 1 / n);
    _meanError += weight * (error - _meanError);
    _variance += weight * (std::pow(error - _meanError, 2) - _variance);
    const bool lagging = std::abs(_meanError) > std::max(0.5 * millisecond, std::sqrt(_variance));
    if (lagging && _accepted > errorWindow) _widenedAt = beat.time;
}

/// Three in a row that keep step with each other are equally late: the beat continues from them. If half of the last
/// sixteen are outliers, the line is fitted again through all of those.
void BeatLoop::noteOutlier(const Beat& beat) {
    const Beat& previous = _recent[_recent.size() - 2];
    const double expected = previous.time + double(beat.count - previous.count) * _period;
    const bool isRegular = _outliers & 2 && std::abs(beat.time - expected) < regularBound;
    _outliers |= 1;
    _regularOutliers = isRegular ? _regularOutliers + 1 : 1;
    if (_regularOutliers == outliersToRelock) {
        _size = outliersToRelock; // earlier ones were on another line
        follow(recent(outliersToRelock), true);
    } else if (std::popcount(_outliers & lastSixteen) >= outliersToRefit) {
        follow(recent(beatsForPeriod), false);
    }
}

} // namespace tessik
