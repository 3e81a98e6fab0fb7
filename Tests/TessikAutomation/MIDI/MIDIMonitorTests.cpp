#include "TessikAutomation/MIDI/MIDIMonitor.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikRig/TapeTimecode.h"

#include <gtest/gtest.h>

#include <thread>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using Kind = MonitorLine::Kind;

struct MIDIMonitorTest : testing::Test {
    MIDIMonitorTest() {
        monitor.watch(QStringLiteral("MIDI In"), in);
        monitor.watch(QStringLiteral("Send To"), out);
    }
    void pass(WordRing& ring, std::uint32_t word) { ring.record(++now, word); }
    void passSysEx(WordRing& ring, const std::vector<std::uint8_t>& data) {
        std::vector<std::uint32_t> words;
        MIDIWords::appendSysEx(words, data);
        for (const std::uint32_t word : words)
            pass(ring, word);
    }
    QStringList texts() {
        QStringList texts;
        for (const MonitorLine& line : monitor.look())
            texts << line.text;
        return texts;
    }

    Uptime now{};
    WordRing in, out;
    MIDIMonitor monitor;
};

TEST_F(MIDIMonitorTest, SaysWhatEachMessageMeans) {
    const struct {
        std::uint32_t word;
        Kind kind;
        const char *text, *raw;
    } words[]{{MIDIWords::controlChange(1, 11, 88), Kind::console, "Fader 12 → −6.1 dB", "B0 0B 58"},
              {MIDIWords::controlChange(16, 48, 0), Kind::console, "Fader ST → −∞ dB", "BF 30 00"},
              {MIDIWords::controlChange(1, 98, 26), Kind::console, "Switches G3 → monitor MUTE, EQ, MUTE", "B0 62 1A"},
              {MIDIWords::controlChange(2, 64, 63), Kind::console, "Switches 1 → all off", "B1 40 3F"},
              {MIDIWords::controlChange(3, 40, 1), Kind::other, "Controller 40 = 1, channel 3", "B2 28 01"},
              {MIDIWords::channelVoice(0xE0, 0, 64), Kind::other, "Pitch bend 0, channel 1", "E0 00 40"},
              {MIDIWords::system(0xFE), Kind::other, "Active sensing", "FE"}};
    for (const auto& each : words) {
        pass(in, each.word);
        const std::vector<MonitorLine> lines = monitor.look();
        ASSERT_EQ(lines.size(), 1u) << each.text;
        EXPECT_EQ(lines[0].text, QString::fromUtf8(each.text));
        EXPECT_EQ(lines[0].raw, QLatin1String(each.raw));
        EXPECT_EQ(lines[0].kind, each.kind) << each.text;
    }
    passSysEx(out, MMCMessage::locate(127, {MTCFrameRate::fps25, 1, 2, 3, 4}));
    passSysEx(out, MMCMessage::command(5, MMCCommand::recordStrobe));
    passSysEx(out, {0x7F, 0x7F, 0x01, 0x01, 0x21, 2, 3, 4});
    passSysEx(out, {0x43, 1, 2, 3, 4, 5, 6});
    const std::vector<MonitorLine> lines = monitor.look();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].text, QStringLiteral("MMC LOCATE 01:02:03:04"));
    EXPECT_EQ(lines[0].raw, QStringLiteral("F0 7F 7F 06 44 06 01 21 02 03 04 00 F7"));
    EXPECT_EQ(lines[1].text, QStringLiteral("MMC RECORD STROBE, device 5"));
    EXPECT_EQ(lines[2].text, QStringLiteral("MTC full frame 01:02:03:04, 25 fps"));
    EXPECT_EQ(lines[3].text, QStringLiteral("System Exclusive, 7 bytes"));
}

TEST_F(MIDIMonitorTest, AWholeRunOfQuarterFramesIsOneLineAndTheRestIsNamedAsSuch) {
    const auto run = [&](int from, int to) {
        for (int piece = from; piece < to; ++piece)
            pass(in,
                 MIDIWords::system(0xF1, TapeTimecode::quarterFrameByte({MTCFrameRate::fps25, 1, 7, 42, 8}, piece)));
    };
    run(3, 8);
    run(0, 8);
    EXPECT_EQ(texts(),
              (QStringList{QStringLiteral("MTC part of a position"), QStringLiteral("MTC 01:07:42:10, 25 fps")}));
    run(0, 5);
    pass(out, MIDIWords::controlChange(1, 0, 106));
    EXPECT_EQ(texts(), QStringList(QStringLiteral("Fader 1 → +0.0 dB")));
    run(0, 8);
    EXPECT_EQ(texts().size(), 2);
}

TEST_F(MIDIMonitorTest, OfAFloodTheLastThousandAreShownInOrder) {
    for (int i = 0; i < 5000; ++i) {
        pass(in, MIDIWords::controlChange(1, 0, i % 128));
        if (i % 50 == 0) pass(out, MIDIWords::controlChange(1, 1, i % 128));
    }
    const std::vector<MonitorLine> lines = monitor.look();
    EXPECT_EQ(lines.size(), 1100u);
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end(),
                               [](const MonitorLine& a, const MonitorLine& b) { return a.stamp < b.stamp; }));
    EXPECT_EQ(lines.back().raw, QStringLiteral("B0 00 %1").arg(4999 % 128, 2, 16, QLatin1Char('0')).toUpper());
    EXPECT_TRUE(monitor.look().empty());
}

TEST(WordRing, AReaderGetsWholeWordsInOrderWhileTheyAreRecorded) {
    WordRing ring;
    constexpr std::uint32_t count = 300'000;
    std::jthread recorder([&ring] {
        for (std::uint32_t i = 0; i < count; ++i)
            ring.record(Uptime(i), i);
    });
    for (std::int64_t next = 0; next < count;) {
        const std::int64_t before = next;
        const std::vector<WordRing::Entry> entries = ring.since(next);
        ASSERT_LE(std::int64_t(entries.size()), next - before);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            ASSERT_EQ(entries[i].stamp.count(), std::int64_t(entries[i].word));
            ASSERT_EQ(std::int64_t(entries[i].word), next - std::int64_t(entries.size()) + std::int64_t(i));
        }
    }
}

} // namespace
} // namespace tessik
