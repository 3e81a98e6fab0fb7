// How far the lock's answer is from where the tape is: against the rig in simulated time, which repeats exactly, and
// against the rig in real time with a main thread that is often busy.
#include "Bench.h"
#include "TessikKit/MIDI/MTCClock.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedRecorder.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <cmath>

namespace tessik::bench {
namespace {

using namespace std::chrono_literals;

constexpr Uptime settled = 1500ms; // after lock

struct Errors {
    double sumOfSquares = 0;
    double worst = 0;
    std::int64_t count = 0;

    void add(double frames, MTCFrameRate rate) {
        const double microseconds = frames / realFramesPerSecond(rate) * 1e6;
        sumOfSquares += microseconds * microseconds;
        worst = std::max(worst, std::abs(microseconds));
        ++count;
    }
    double rms() const { return std::sqrt(sumOfSquares / double(count)); }
};

struct Run {
    Errors lock, lastPosition;
    Uptime settling{}; // from lock until the error stays under a millisecond; up to `settled`
};

Run simulate(MTCFrameRate rate, Uptime jitter, std::uint32_t seed) {
    ManualUptimeClock uptime;
    VirtualMIDIService service(VirtualMIDIService::Delivery::synchronous, uptime);
    SimulatedRecorder recorder(service, {.rate = rate, .jitter = jitter, .seed = seed},
                               SimulatedRecorder::Drive::manual, uptime);
    MTCClock clock(service, QStringLiteral("Bench Timecode"), uptime);
    clock.connection.selectSource(service.sources().front().uniqueID);
    recorder.play();
    Run run;
    std::optional<Uptime> lockedAt;
    for (int millisecond = 0; millisecond < 15'000; ++millisecond) {
        recorder.roll(uptime, 1ms);
        QCoreApplication::sendPostedEvents();
        const Uptime now = uptime.now();
        const std::optional<double> frame = clock.frame(now);
        if (!frame) continue;
        if (!lockedAt) lockedAt = now;
        const double truth = recorder.truePosition(now);
        const double error = *frame - truth;
        if (now - *lockedAt >= settled) {
            run.lock.add(error, rate);
            run.lastPosition.add(double(clock.currentPosition.value()->totalFrames()) - truth, rate);
        } else if (std::abs(error) / realFramesPerSecond(rate) > 0.001) {
            run.settling = now - *lockedAt;
        }
    }
    return run;
}

const Benchmark lockError("mtc_lock_error_us", [](const Report& report) {
    for (const MTCFrameRate rate : {MTCFrameRate::fps24, MTCFrameRate::fps25, MTCFrameRate::fps30}) {
        for (const Uptime jitter : {Uptime(0), Uptime(1500us), Uptime(3000us)}) {
            Errors lock, lastPosition;
            Uptime settling{};
            constexpr std::uint32_t seeds = 8;
            for (std::uint32_t seed = 1; seed <= seeds; ++seed) {
                const Run run = simulate(rate, jitter, seed);
                lock.sumOfSquares += run.lock.sumOfSquares;
                lock.count += run.lock.count;
                lock.worst = std::max(lock.worst, run.lock.worst);
                lastPosition.worst = std::max(lastPosition.worst, run.lastPosition.worst);
                settling = std::max(settling, run.settling);
            }
            const bool hasGoal = jitter <= 1500us;
            const auto goal = [hasGoal](double value) { return hasGoal ? std::optional(value) : std::nullopt; };
            const std::string name = "mtc_lock_error_us." + std::to_string(framesPerSecond(rate)) + "fps.jitter" +
                                     std::to_string(jitter / 1us);
            report({name + ".rms", lock.rms(), "us", goal(250)});
            report({name + ".worst", lock.worst, "us", goal(1000)});
            report({name + ".settled", double(settling / 1us), "us", goal(300'000)});
            report({name + ".last_position_worst", lastPosition.worst, "us", std::nullopt});
        }
    }
});

const Benchmark busyMain("mtc_busy_main_us", [](const Report& report) {
    for (const Uptime jitter : {Uptime(0), Uptime(1500us)}) {
        constexpr MTCFrameRate rate = MTCFrameRate::fps25;
        const UptimeClock& uptime = UptimeClock::system();
        VirtualMIDIService service;
        SimulatedRecorder recorder(service, {.rate = rate, .jitter = jitter});
        MTCClock clock(service, QStringLiteral("Bench Timecode"));
        clock.connection.selectSource(service.sources().front().uniqueID);
        recorder.play();

        Errors lock;
        std::optional<Uptime> lockedAt;
        QTimer sampling, blocking;
        QEventLoop loop;
        sampling.setTimerType(Qt::PreciseTimer);
        blocking.setTimerType(Qt::PreciseTimer);
        sampling.callOnTimeout([&] {
            const Uptime now = uptime.now();
            const std::optional<double> frame = clock.frame(now);
            if (frame && !lockedAt) lockedAt = now;
            if (frame && now - *lockedAt >= settled) lock.add(*frame - recorder.truePosition(now), rate);
            if (lockedAt && now - *lockedAt >= 10s) loop.quit();
        });
        blocking.callOnTimeout([&] {
            for (const Uptime until = uptime.now() + 30ms; uptime.now() < until;) {
            }
        });
        QTimer::singleShot(20s, &loop, &QEventLoop::quit);
        sampling.start(5ms);
        blocking.start(100ms);
        loop.exec();
        if (lock.count == 0) qFatal("the rig's recorder was started and nothing locked");
        const std::string name = "mtc_busy_main_us.25fps.jitter" + std::to_string(jitter / 1us);
        report({name + ".rms", lock.rms(), "us", 250});
        report({name + ".worst", lock.worst, "us", 1000});
    }
});

} // namespace
} // namespace tessik::bench
