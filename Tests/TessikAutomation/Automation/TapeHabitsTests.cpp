// What real machines send, and that no take ends and no false value reaches the desk for it.
#include "Support/PassEngineFixture.h"

#include <gtest/gtest.h>

#include <random>

namespace tessik::test {
namespace {

constexpr std::array rates{MTCFrameRate::fps24, MTCFrameRate::fps25, MTCFrameRate::fps30Drop, MTCFrameRate::fps30};

/// A rig whose tape is at a label, and what is asked of it.
struct HabitRig : AutomationRig {
    explicit HabitRig(const RecorderSettings& settings, std::int64_t frame = 90'000) : AutomationRig(settings) {
        tape.locate(TimecodePosition::fromTotalFrames(settings.rate, frame));
        run(20ms);
    }
    double truth() { return tape.truePosition(uptime.now()); }
    /// Of the lock's answer, in seconds.
    double error() {
        const auto frame = clock.frame(uptime.now());
        return frame ? (*frame - truth()) / framesPerSecond(clock.currentPosition.value()->frameRate) : 1e9;
    }
    bool isWriting() { return engine.isRecording() && engine.mode.value() == AutomationMode::write; }
    bool isStillFirstTake() { return isWriting() && passes.passes.value().isEmpty(); }
    void writeFor(Uptime duration) {
        engine.mode = AutomationMode::write;
        roll(duration);
    }
};

std::string named(const char* format, auto... values) { return QString::asprintf(format, values...).toStdString(); }

/// Two plays with a rewind between, the tape told of by quarter frames alone.
TEST(TapeHabits, AStartIsNotMadeOfTwoPlaces) {
    for (const MTCFrameRate rate : rates) {
        std::minstd_rand random(7 + unsigned(rate));
        const auto upTo = [&](int n) { return int(random() % unsigned(n)); };
        const std::int64_t passStart = 50'000;
        AutomationPass song = pass({}, 50, rate);
        song.startTimecode = TimecodePosition::fromTotalFrames(rate, passStart);
        // Every 25 frames the fader tells which 25 frames these are.
        for (int i = 0; i < 127 * 4; ++i)
            song.events.append(fader(i * 25, in1, i % 127));
        for (int n = 0; n < 60; ++n) {
            const RecorderSettings settings{.rate = rate, .tellsLocates = upTo(2) == 0};
            const std::int64_t from = passStart + 1000 + upTo(9000);
            const Uptime stopAfter = 700ms + Uptime(1us) * upTo(300'000);
            const Uptime rewind = Uptime(1us) * upTo(1'500'000);
            SCOPED_TRACE(named("#%d at %s", n, qPrintable(description(rate))));
            for (const bool isWrite : {true, false}) {
                HabitRig rig(settings, from);
                rig.roll(stopAfter);
                rig.stop();
                if (upTo(2) != 0) {
                    rig.tape.rewind();
                    rig.run(rewind);
                    rig.stop();
                } else {
                    rig.tape.locate(TimecodePosition::fromTotalFrames(rate, passStart + 1000 + upTo(9000)));
                    rig.run(10ms);
                }
                rig.engine.select(song);
                rig.engine.mode = isWrite ? AutomationMode::write : AutomationMode::read;
                rig.tape.play();
                for (int tick = 0; tick < 200; ++tick) {
                    rig.run(5ms);
                    if (isWrite || !rig.engine.isRolling.value()) continue;
                    const double offset = rig.truth() - double(passStart);
                    const int sent = rig.output.believedValue(MIDIChannelMapping::faderCC(in1)).value_or(-1);
                    const int early = int(std::floor((offset - 10) / 25)) % 127;
                    const int late = int(std::floor((offset + 4) / 25)) % 127;
                    ASSERT_TRUE(sent == early || sent == late) << sent << " from elsewhere";
                }
                ASSERT_EQ(rig.isWriting(), isWrite) << "the take ended after a rewind";
            }
        }
    }
}

TEST(TapeHabits, ATapeToldByAudioBuffersRolls) {
    for (const MTCFrameRate rate : rates)
        for (const int hertz : {44'100, 48'000})
            for (const int samples : {64, 128, 256, 480, 512, 1024, 2048})
                for (int phase = 0; phase < 24; ++phase) {
                    const Uptime buffer{std::int64_t(samples) * 1'000'000'000 / hertz};
                    HabitRig rig({.rate = rate, .audioBuffer = buffer}, 90'000 + phase);
                    rig.run(buffer * phase / 24);
                    SCOPED_TRACE(named("%d at %d, phase %d, rate %d", samples, hertz, phase, int(rate)));
                    rig.writeFor(500ms);
                    ASSERT_TRUE(rig.isWriting()) << "does not roll in 0.5 s";
                    rig.run(2s);
                    ASSERT_TRUE(rig.isStillFirstTake());
                }
}

TEST(TapeHabits, ASlowStartInAudioBuffersIsFollowedEvenlyInTheEnd) {
    for (const MTCFrameRate rate : rates)
        for (const int samples : {256, 512, 1024, 2048})
            for (int phase = 0; phase < 8; ++phase) {
                HabitRig rig({.rate = rate, .audioBuffer = Uptime(1s) * samples / 44'100, .slowStart = 2200ms});
                rig.roll(1400ms + Uptime(7ms) * phase);
                rig.tape.slip(72ms);
                rig.run(4s);
                double least = 1, most = -1;
                for (int tick = 0; tick < 200; ++tick) {
                    rig.run(5ms);
                    least = std::min(least, rig.error());
                    most = std::max(most, rig.error());
                }
                EXPECT_LT(most - least, 0.006) << samples << " samples, phase " << phase << ", rate " << int(rate);
            }
}

TEST(TapeHabits, NothingThatATapeDoesEndsATake) {
    struct Case {
        std::string name;
        RecorderSettings settings;
        std::function<void(SimulatedRecorder&)> happens;
        Uptime lasts;
        std::optional<Uptime> rightAfter; // at the latest
        std::int64_t secondsToMidnight = 3600;
    };
    std::vector<Case> cases;
    for (const int gap : {20, 30, 40, 60, 80, 100, 150, 200, 300, 400, 500, 600, 800, 1000, 1300, 1600, 1900}) {
        const Uptime away = Uptime(1ms) * gap;
        cases.push_back({named("dropout of %d ms", gap), {}, [=](auto& tape) { tape.dropOut(away); }, away, 1s});
    }
    for (const int delay : {8, 10, 16, 20, 30, 40, 50, 60, 70, 80, 100, 150, 200, 300, 500, 700, 1000, 1500, 1900}) {
        const Uptime late = Uptime(1ms) * delay; // half a run lost and two runs, then it is right
        cases.push_back({named("slip of %d ms", delay), {}, [=](auto& tape) { tape.slip(late); }, late, 250ms});
    }
    for (int start = 20; start <= 40; start += 3)
        cases.push_back({named("slow start of %d00 ms", start),
                         {.jitter = Uptime(500us) * (1 + start % 5), .slowStart = 100ms * start},
                         [](auto&) {},
                         4s,
                         {}});
    cases.push_back({"bad rate", {}, [](auto& tape) { tape.misreadRate(); }, 0ms, {}});
    cases.push_back({"midnight", {}, [](auto&) {}, 3s, {}, 4});
    for (const Case& c : cases)
        for (const MTCFrameRate rate : rates)
            for (int phase = 0; phase < 24; ++phase) {
                SCOPED_TRACE(named("%s, phase %d, rate %d", c.name.c_str(), phase, int(rate)));
                RecorderSettings settings = c.settings;
                settings.rate = rate;
                settings.seed = std::uint32_t(phase + 1);
                HabitRig rig(settings, labelsPerDay(rate) - c.secondsToMidnight * framesPerSecond(rate));
                rig.writeFor(2s + Uptime(7ms) * phase);
                c.happens(rig.tape);
                rig.run(c.lasts + c.rightAfter.value_or(1s));
                if (c.rightAfter) {
                    ASSERT_LT(std::abs(rig.error()), 0.002);
                }
                rig.run(1s);
                ASSERT_TRUE(rig.isStillFirstTake());
            }
}

} // namespace
} // namespace tessik::test
