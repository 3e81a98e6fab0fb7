#include "TessikKit/MIDI/MTCDecoder.h"
#include "TessikKit/MIDI/MTCLock.h"
#include "TessikRig/TapeTimecode.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tessik {
namespace {

using enum MTCFrameRate;

/// A tape whose every fault is at hand, and a lock that follows it. Times in seconds, positions in tape frames.
class FaultyTape {
public:
    explicit FaultyTape(MTCFrameRate itsRate, double from = 90000) : rate(itsRate), position(from) {}

    const MTCFrameRate rate;
    double now = 1000;
    double position;
    double speed = 1;
    double jitter = 0;
    MTCLock lock;

    // ---- what was seen since `look`
    double worst = 0;   ///< of the answers' errors, ms
    double ranBack = 0; ///< the largest step back of the answers, frames
    double widest = 0;  ///< largest step between two answers a millisecond apart, frames
    std::optional<double> answer;
    void look() { worst = ranBack = widest = 0; }
    /// Plays on, and tells how far off the answers were in that time, ms.
    double worstOf(double seconds) {
        look();
        play(seconds);
        return worst;
    }

    /// What happens to the n-th quarter frame of a stretch: the delay in seconds, or none to lose it.
    using Fault = std::function<std::optional<double>(int n, double quarterFrame)>;
    void play(
        double seconds, const Fault& fault = [](int, double) { return 0; }) {
        const double end = now + seconds;
        double nextAnswer = std::floor(now * 1000 + 1) / 1000;
        std::vector<std::pair<double, std::int64_t>> arrivals;
        const double quartersPerSecond = 4 * realFramesPerSecond(rate) * speed;
        const auto first = std::int64_t(speed > 0 ? std::ceil(position * 4) : std::floor(position * 4));
        for (int n = 0;; ++n) {
            const std::int64_t quarter = first + (speed > 0 ? n : -n);
            const double at = now + (double(quarter) - position * 4) / quartersPerSecond;
            if (at >= end) break;
            const std::optional<double> delay = fault(n, 1 / std::abs(quartersPerSecond));
            if (delay) arrivals.emplace_back(at + *delay + jitter * _even(_random), quarter);
        }
        std::sort(arrivals.begin(), arrivals.end());
        for (const auto& [at, quarter] : arrivals) {
            for (; nextAnswer < at; nextAnswer += 0.001)
                ask(nextAnswer);
            send(at, quarter);
        }
        for (; nextAnswer < end; nextAnswer += 0.001)
            ask(nextAnswer);
        position = truth(end);
        now = end;
    }
    void pause(double seconds) {
        const double wasSpeed = std::exchange(speed, 0);
        for (const double end = now + seconds; now < end; now += 0.001)
            ask(now);
        speed = wasSpeed;
    }

    double truth(double at) const { return position + (at - now) * realFramesPerSecond(rate) * speed; }
    /// Frames on the scale of the labels that stand at a tape frame.
    double labelled(double tapeFrame) const {
        const double whole = std::floor(tapeFrame);
        return double(TapeTimecode::label(rate, std::int64_t(whole)).totalFrames()) + tapeFrame - whole;
    }
    std::optional<double> ask(double at) {
        const std::optional<double> before = answer;
        answer = lock.frame(Uptime(std::llround(at * 1e9)));
        if (!answer) return answer;
        worst = std::max(worst, std::abs(*answer - labelled(truth(at))) / realFramesPerSecond(rate) * 1000);
        if (before) ranBack = std::max(ranBack, *before - *answer);
        if (before) widest = std::max(widest, *answer - *before);
        return answer;
    }
    void send(double at, std::int64_t quarter) {
        const int piece = int(quarter & 7);
        const TimecodePosition label = TapeTimecode::label(rate, (quarter - piece) / 4 + spliced);
        sendByte(at, TapeTimecode::quarterFrameByte(label, piece));
    }
    void sendByte(double at, std::uint8_t byte) {
        lock.quarterFrame(Uptime(std::llround(at * 1e9)), byte >> 4, _decoder.handleQuarterFrame(byte));
    }
    std::int64_t spliced = 0; ///< added to the labels sent, frames

private:
    MTCDecoder _decoder;
    std::mt19937 _random{7};
    std::uniform_real_distribution<double> _even{-1, 1};
};

// What happens to the quarter frames each second of play, and how far the answers may be off.
TEST(MTCLock, HoldsThroughFaults) {
    struct Case {
        const char* fault;
        double jitter;
        FaultyTape::Fault happens;
        double worst; // ms
    };
    const std::optional<double> lost;
    const Case cases[] = {
        {"none", 0, [](int, double) { return 0; }, 0.01},
        {"±1.5 ms", 0.0015, [](int, double) { return 0; }, 1},
        {"±3 ms", 0.003, [](int, double) { return 0; }, 2},
        {"one 40 ms late", 0, [](int n, double) { return n == 20 ? 0.040 : 0; }, 0.01},
        {"one 40 ms late among ±3 ms", 0.003, [](int n, double) { return n == 20 ? 0.040 : 0; }, 2},
        {"one 40 ms late, the next queued up behind it", 0,
         [](int n, double quarter) { return n < 20 ? 0 : std::max(0.0, 0.040 - (n - 20) * (quarter - 0.0007)); }, 0.8},
        {"one lost", 0, [=](int n, double) { return n == 20 ? lost : 0; }, 0.01},
        {"every fifth lost among ±1.5 ms", 0.0015, [=](int n, double) { return n % 5 == 0 ? lost : 0; }, 1},
        {"five lost", 0, [=](int n, double) { return n > 20 && n <= 25 ? lost : 0; }, 0.01},
        {"half a second of them", 0, [=](int n, double) { return n < 50 ? lost : 0; }, 600},
        {"all 4 ms late now and then", 0, [](int n, double) { return n < 40 ? 0.004 : 0; }, 5},
        {"all 8 ms late now and then", 0, [](int n, double) { return n < 40 ? 0.008 : 0; }, 8.01},
        {"8 ms more each five of them", 0, [](int n, double) { return 0.008 * std::min(1 + n / 5, 4); }, 32.01},
    };
    for (const MTCFrameRate rate : {fps24, fps25, fps30Drop, fps30}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << c.fault << " at " << qPrintable(description(rate)));
            FaultyTape tape(rate);
            tape.jitter = c.jitter;
            tape.play(2);
            ASSERT_TRUE(tape.answer);
            tape.look();
            for (int second = 0; second < 3; ++second)
                tape.play(1, c.happens);
            EXPECT_LT(tape.worst, c.worst);
            EXPECT_EQ(tape.ranBack, 0);
        }
    }
}

TEST(MTCLock, FollowsVarispeed) {
    for (const double speed : {0.9, 0.97, 1.03, 1.1}) {
        SCOPED_TRACE(speed);
        FaultyTape fromStart(fps25);
        fromStart.speed = speed;
        fromStart.jitter = 0.0015;
        fromStart.play(1.5);
        EXPECT_LT(fromStart.worstOf(3), 1.2);

        FaultyTape changing(fps25);
        changing.play(3);
        changing.speed = speed;
        EXPECT_LT(changing.worstOf(1), 8) << "while it finds the new speed";
        EXPECT_LT(changing.worstOf(2), 0.3);
        EXPECT_EQ(changing.ranBack, 0);
    }
}

TEST(MTCLock, FollowsAJumpThatTwoRunsAgreeOn) {
    for (const double jump : {-50.0, 50.0, 2.0, 1000.25, -7.75}) { // frames; with fractions the pieces jump too
        SCOPED_TRACE(jump);
        FaultyTape tape(fps25);
        tape.play(2);
        tape.look();
        tape.position += jump;
        tape.play(0.12);
        EXPECT_NEAR(tape.worst, std::abs(jump) * 40, 20) << "one run is not believed";
        tape.play(0.15);
        EXPECT_LT(tape.worstOf(1), 0.1);
        EXPECT_EQ(tape.ranBack, 0);
    }
}

TEST(MTCLock, ASplicedRunMovesNothing) {
    FaultyTape tape(fps25);
    tape.play(2);
    tape.look();
    for (const std::int64_t splice : {1500, -25, 37}) {
        tape.spliced = splice;
        tape.play(0.08);
        tape.spliced = 0;
        tape.play(0.4);
    }
    EXPECT_LT(tape.worst, 0.01);
}

TEST(MTCLock, GoesTwoFramesPastTheLastQuarterFrameAtMost) {
    FaultyTape tape(fps25);
    tape.play(2);
    const double last = *tape.answer;
    tape.pause(0.4);
    EXPECT_NEAR(*tape.answer, last + 2, 0.3);
    EXPECT_EQ(tape.ranBack, 0);
    tape.play(0.2); // back where it stopped
    EXPECT_LT(tape.worstOf(1), 0.1);
}

TEST(MTCLock, BridgesASilence) {
    FaultyTape tape(fps30);
    tape.play(2);
    tape.play(0.3, [](int, double) { return std::nullopt; });
    tape.play(0.15);
    EXPECT_LT(tape.worstOf(1), 0.1);
}

TEST(MTCLock, StandsStillInReverse) {
    FaultyTape tape(fps25);
    tape.play(2);
    const double there = *tape.answer;
    tape.speed = -1;
    tape.play(0.4);
    EXPECT_NEAR(*tape.answer, there, 2);
    EXPECT_FALSE(tape.lock.instant(there + 10));
    EXPECT_EQ(tape.ranBack, 0);
    tape.speed = 1;
    tape.play(0.3);
    EXPECT_LT(tape.worstOf(1), 0.1);
    EXPECT_EQ(tape.ranBack, 0);
}

TEST(MTCLock, FollowsTheLabelsThatDropFrameLeavesOut) {
    FaultyTape tape(fps30Drop, 1798 * 3 + 2 - 60); // two seconds before 00:03:00:02
    tape.play(1.9);
    EXPECT_LT(tape.worstOf(0.3), 67) << "two labels, until the run that leaves them out is complete";
    EXPECT_NEAR(tape.widest, 2, 0.1) << "and then at once";
    EXPECT_LT(tape.worstOf(1), 0.01);

    FaultyTape tenth(fps30Drop, 17982 - 60); // two seconds before 00:10:00:00, where none is left out
    tenth.play(4);
    EXPECT_LT(tenth.worst, 0.01);
}

TEST(MTCLock, StaysNearAtSpeedsThatItCannotFollow) {
    for (const double speed : {0.3, 0.5, 2.0, 4.0}) {
        SCOPED_TRACE(speed);
        FaultyTape tape(fps25);
        tape.play(2);
        tape.speed = speed;
        tape.play(2);
        EXPECT_LT(tape.worstOf(3), 400);
        tape.speed = 1;
        tape.play(2);
        EXPECT_LT(tape.worstOf(1), 0.1) << "and is back when the tape is";
    }
}

TEST(MTCLock, TellsWhenAFrameWillCome) {
    FaultyTape tape(fps24);
    EXPECT_FALSE(tape.lock.instant(0));
    tape.speed = 1.05;
    tape.play(3);
    const double next = std::floor(*tape.answer) + 1;
    const Uptime when = *tape.lock.instant(next);
    EXPECT_NEAR(tape.labelled(tape.truth(double(when.count()) / 1e9)), next, 0.01);
    EXPECT_NEAR(*tape.lock.frame(when), next, 1e-6);
}

TEST(MTCLock, TakesAnything) {
    FaultyTape tape(fps25);
    std::mt19937 random(3);
    double at = 0;
    for (int i = 0; i < 200'000; ++i) {
        at += double(random() % 30'000) / 1e6;
        const bool inStep = random() % 16 != 0;
        tape.sendByte(at, std::uint8_t(inStep ? ((i & 7) << 4 | int(random() & 15)) : int(random() & 0x7F)));
        const auto answer = tape.lock.frame(Uptime(std::llround(at * 1e9)));
        ASSERT_TRUE(!answer || (std::isfinite(*answer) && *answer > -100 && *answer < 32 * 3600 * 31)) << i;
    }
    // What no clock should do, time running backwards among it.
    tape.sendByte(-1e5, 0x00);
    tape.sendByte(1e5, 0x10);
    EXPECT_TRUE(std::isfinite(tape.lock.frame(Uptime(0)).value_or(0)));
}

} // namespace
} // namespace tessik
