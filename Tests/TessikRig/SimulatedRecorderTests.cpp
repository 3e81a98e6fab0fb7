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

TEST(SimulatedRecorder, ObeysMachineControl) {
    test::Tape tape({.rate = fps25});
    SimulatedRecorder& recorder = tape.recorder;
    MIDIClientRef client = 0;
    MIDIPortRef port = 0;
    tape.service.createClient(QStringLiteral("Remote"), {}, client);
    tape.service.createOutputPort(client, QStringLiteral("Remote"), port);
    const auto command = [&](std::uint8_t code) {
        std::vector<std::uint32_t> words;
        MIDIWords::appendSysEx(words, std::vector<std::uint8_t>{0x7F, 0x7F, 0x06, code});
        tape.service.send(port, tape.service.destinations().front().ref, words);
    };
    const auto where = [&] { return recorder.label(tape.uptime.now()).displayString(); };
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

} // namespace
} // namespace tessik
