#include "Support/TapeFixture.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikRig/TapeTimecode.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using enum MTCFrameRate;
using enum SimulatedRecorder::State;

TEST(TapeTimecode, DropLabelsRunAsOnARealTape) {
    struct Case {
        std::int64_t frame;
        const char* label;
    };
    const Case cases[] = {{0, "00:00:00:00"},      {1799, "00:00:59:29"},    {1800, "00:01:00:02"},
                          {3597, "00:01:59:29"},   {3598, "00:02:00:02"},    {17981, "00:09:59:29"},
                          {17982, "00:10:00:00"},  {19781, "00:10:59:29"},   {19782, "00:11:00:02"},
                          {107892, "01:00:00:00"}, {2589407, "23:59:59:29"}, {2589408, "00:00:00:00"}};
    for (const Case& c : cases) {
        const TimecodePosition label = TapeTimecode::label(fps30Drop, c.frame);
        EXPECT_EQ(label.displayString(), QLatin1String(c.label));
        EXPECT_EQ(TapeTimecode::tapeFrame(fps30Drop, label), c.frame % 2589408) << c.label;
    }
    for (const MTCFrameRate rate : {fps24, fps25, fps30Drop, fps30}) {
        const std::int64_t day = TapeTimecode::framesPerDay(rate);
        for (std::int64_t frame = 0; frame < day; frame += 911)
            ASSERT_EQ(TapeTimecode::tapeFrame(rate, TapeTimecode::label(rate, frame)), frame);
        EXPECT_EQ(TapeTimecode::label(rate, -1), TapeTimecode::label(rate, day - 1));
    }
}

struct SimulatedRecorderTest : testing::Test {
    test::Tape tape{{.rate = fps25, .deviceID = 3}};
    SimulatedRecorder& recorder = tape.recorder;
    MIDIClientRef client = 0;
    MIDIPortRef port = 0;

    SimulatedRecorderTest() {
        tape.service.createClient(QStringLiteral("Remote"), {}, client);
        tape.service.createOutputPort(client, QStringLiteral("Remote"), port);
    }
    void send(const std::vector<std::uint8_t>& sysEx) {
        std::vector<std::uint32_t> words;
        MIDIWords::appendSysEx(words, sysEx);
        tape.service.send(port, tape.service.destinations().front().ref, words);
    }
    void command(std::uint8_t code, std::uint8_t device = 3) { send({0x7F, device, 0x06, code}); }
    QString where() { return recorder.label(tape.uptime.now()).displayString(); }
};

TEST_F(SimulatedRecorderTest, ObeysMachineControl) {
    command(0x02);
    tape.roll(2s);
    EXPECT_EQ(recorder.state(), playing);
    EXPECT_EQ(where(), QStringLiteral("00:00:02:00"));
    command(0x06);
    EXPECT_TRUE(recorder.isRecording());
    command(0x07);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(recorder.state(), playing);
    command(0x09);
    tape.roll(1s);
    EXPECT_EQ(recorder.state(), paused);
    command(0x04);
    tape.roll(1s);
    command(0x01);
    EXPECT_EQ(recorder.state(), stopped);
    EXPECT_EQ(where(), QStringLiteral("00:00:22:00")) << "twenty times play speed";
    command(0x05);
    tape.roll(500ms);
    EXPECT_EQ(recorder.state(), rewinding);
    EXPECT_EQ(where(), QStringLiteral("00:00:12:00"));
    tape.roll(5s);
    EXPECT_EQ(where(), QStringLiteral("00:00:00:00")) << "the tape's end";
    command(0x06);
    EXPECT_EQ(recorder.state(), playing) << "a strobe rolls and records";
    EXPECT_TRUE(recorder.isRecording());
    command(0x01);
    EXPECT_FALSE(recorder.isRecording());
}

TEST_F(SimulatedRecorderTest, AnswersToItselfAndToAllCall) {
    command(0x02, 4);
    EXPECT_EQ(recorder.state(), stopped);
    send({0x7F, 3, 0x07, 0x02}); // a response, not a command
    send({0x7E, 3, 0x06, 0x02});
    send({0x7F, 3, 0x06});
    EXPECT_EQ(recorder.state(), stopped);
    command(0x02, 0x7F);
    EXPECT_EQ(recorder.state(), playing);

    SimulatedRecorder deaf(tape.service, {.deviceID = 0, .answersAllCall = false}, SimulatedRecorder::Drive::manual,
                           tape.uptime);
    std::vector<std::uint32_t> words;
    MIDIWords::appendSysEx(words, std::vector<std::uint8_t>{0x7F, 0x7F, 0x06, 0x02});
    tape.service.send(port, tape.service.destinations().back().ref, words);
    EXPECT_EQ(deaf.state(), stopped);
}

TEST_F(SimulatedRecorderTest, LocatesAndSaysWhere) {
    send({0x7F, 3, 0x06, 0x44, 0x06, 0x01, 0x21, 0x02, 0x03, 0x04, 0x00});
    tape.roll(1ms);
    EXPECT_EQ(tape.clock.currentPosition.value(), (TimecodePosition{fps25, 1, 2, 3, 4}));
    EXPECT_FALSE(tape.clock.isRunning.value());
    EXPECT_EQ(recorder.state(), stopped);
    // Several commands in one message; what is cut off is not obeyed.
    send({0x7F, 3, 0x06, 0x44, 0x06, 0x01, 0x22, 0x00, 0x00, 0x00, 0x00, 0x02});
    EXPECT_EQ(recorder.state(), playing);
    tape.roll(1s);
    EXPECT_EQ(where(), QStringLiteral("02:00:01:00"));
    send({0x7F, 3, 0x06, 0x44, 0x06, 0x01, 0x25, 0x00});
    EXPECT_EQ(where(), QStringLiteral("02:00:01:00"));
    // Out of any range, as from a faulty remote.
    send({0x7F, 3, 0x06, 0x44, 0x06, 0x01, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F});
    tape.roll(1s);
    EXPECT_EQ(recorder.state(), playing);
}

TEST_F(SimulatedRecorderTest, SendsNothingWhileItShuttles) {
    recorder.play();
    tape.roll(1s);
    recorder.fastForward();
    const Uptime last = tape.clock.lastQuarterFrameStamp();
    tape.roll(2s);
    EXPECT_EQ(tape.clock.lastQuarterFrameStamp(), last);
    EXPECT_FALSE(tape.clock.isRunning.value());
    recorder.play();
    tape.roll(1s);
    EXPECT_TRUE(tape.clock.isRunning.value());
    EXPECT_NEAR(*tape.clock.frame(tape.uptime.now()), recorder.truePosition(tape.uptime.now()), 0.01);
}

TEST(SimulatedRecorder, WrapsAfterADay) {
    for (const MTCFrameRate rate : {fps24, fps25, fps30Drop, fps30}) {
        test::Tape tape({.rate = rate});
        tape.recorder.locate({.hours = 23, .minutes = 59, .seconds = 58});
        tape.recorder.play();
        tape.roll(5s);
        const double now = tape.recorder.truePosition(tape.uptime.now());
        EXPECT_NEAR(now, 3 * framesPerSecond(rate), 2);
        EXPECT_NEAR(*tape.clock.frame(tape.uptime.now()), now, 0.1);
    }
}

TEST(SimulatedRecorder, JitterIsBoundedEvenAndRepeatable) {
    const auto stamps = [](Uptime jitter, std::uint32_t seed) {
        test::Tape tape({.rate = fps25, .jitter = jitter, .seed = seed});
        std::vector<Uptime> arrivals;
        tape.recorder.play();
        const Uptime start = tape.uptime.now();
        tape.roll(4s, [&] {
            const Uptime last = tape.clock.lastQuarterFrameStamp() - start;
            if (last >= Uptime(0) && (arrivals.empty() || last != arrivals.back())) arrivals.push_back(last);
        });
        return arrivals;
    };
    const auto exact = stamps(0ms, 1);
    const auto rough = stamps(3ms, 1);
    ASSERT_GE(exact.size(), 399u);
    double mean = 0;
    Uptime worst{};
    for (std::size_t i = 5; i < std::min(exact.size(), rough.size()); ++i) {
        EXPECT_EQ(exact[i], 10ms * std::int64_t(i));
        const Uptime error = rough[i] - exact[i];
        mean += double(error.count()) / double(rough.size());
        worst = std::max(worst, std::chrono::abs(error));
    }
    EXPECT_LE(worst, 3ms);
    EXPECT_GE(worst, 2900us);
    EXPECT_NEAR(mean, 0, 400'000);
    EXPECT_EQ(stamps(3ms, 1), rough);
    EXPECT_NE(stamps(3ms, 2), rough);
}

} // namespace
} // namespace tessik
