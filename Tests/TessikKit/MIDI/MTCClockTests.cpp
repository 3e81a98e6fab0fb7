#include "Support/FarDesk.h"
#include "Support/TapeFixture.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikRig/TapeTimecode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using enum MTCFrameRate;
using Bytes = std::vector<std::uint8_t>;

Bytes run(const TimecodePosition& label, int from = 0, int to = 7) {
    Bytes bytes;
    for (int piece = from; piece != to; piece += from < to ? 1 : -1)
        bytes.push_back(TapeTimecode::quarterFrameByte(label, piece));
    bytes.push_back(TapeTimecode::quarterFrameByte(label, to));
    return bytes;
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST(MTCDecoder, PublishesWhatTheStreamsSay) {
    struct Case {
        const char* stream;
        Bytes bytes;
        std::vector<TimecodePosition> published;
    };
    const TimecodePosition at{fps30, 10, 20, 30, 8};
    const TimecodePosition twoOn{fps30, 10, 20, 30, 10};
    const Case cases[] = {
        {"01:02:03:04 at 25 as it is on the wire",
         {0x04, 0x10, 0x23, 0x30, 0x42, 0x50, 0x61, 0x72},
         {{fps25, 1, 2, 3, 6}}},
        {"24 fps over midnight", run({fps24, 23, 59, 59, 22}), {{fps24, 24, 0, 0, 0}}},
        {"29.97 drop, a plain carry", run({fps30Drop, 0, 0, 59, 28}), {{fps30Drop, 0, 1, 0, 0}}},
        {"30 fps, every field large", run({fps30, 23, 58, 57, 26}), {{fps30, 23, 58, 57, 28}}},
        {"joined in mid-run", run(at, 3) + run(at), {twoOn}},
        {"restarted in mid-run", run({fps30, 1, 1, 1, 1}, 0, 4) + run(at), {twoOn}},
        {"restarted after every piece but the last", run(at, 0, 1) + run(at, 0, 2) + run(at, 0, 6) + run(at), {twoOn}},
        {"a piece missing, then whole", run(at, 0, 4) + run(at, 6) + run(at), {twoOn}},
        {"a piece twice", run(at, 0, 4) + run(at, 4) + run(at), {twoOn}},
        {"reverse", run({fps30, 1, 0, 0, 8}, 7, 0) + run({fps30, 1, 0, 0, 6}, 7, 0), {}},
        {"reverse, then forward", run(at, 7, 0) + run(at), {twoOn}},
        {"spliced at a second", run({fps25, 0, 0, 9, 24}, 0, 1) + run({fps25, 0, 0, 10, 0}, 2), {{fps25, 0, 0, 11, 1}}},
        {"spliced at a minute", run({fps30, 0, 0, 59, 28}, 0, 3) + run({fps30, 0, 1, 0, 0}, 4), {{fps30, 0, 2, 0, 0}}},
        {"bits that the format does not define",
         {0x00, 0x1E, 0x20, 0x3C, 0x40, 0x5C, 0x61, 0x7A},
         {{fps25, 1, 0, 0, 2}}},
        {"all bits set", {0x0F, 0x1F, 0x2F, 0x3F, 0x4F, 0x5F, 0x6F, 0x7F}, {{fps30, 32, 4, 4, 3}}},
    };
    for (const Case& c : cases) {
        MTCDecoder decoder;
        std::vector<TimecodePosition> published;
        for (const std::uint8_t byte : c.bytes)
            if (const auto position = decoder.handleQuarterFrame(byte)) published.push_back(*position);
        EXPECT_EQ(published, c.published) << c.stream;
    }
}

/// A clock fed word by word.
struct MTCClockTest : testing::Test {
    ManualUptimeClock uptime;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, uptime};
    FarDesk far{service};
    std::unique_ptr<MTCClock> clock = std::make_unique<MTCClock>(service, QStringLiteral("Test Timecode"), uptime);

    MTCClockTest() { clock->connection.selectSource(far.outID()); }
    void send(const std::vector<std::uint32_t>& words) {
        service.transmit(far.out, words);
        QCoreApplication::sendPostedEvents();
    }
    /// One each 10 ms, the last one now: 25 fps.
    void sendQuarterFrames(const Bytes& bytes) {
        for (const std::uint8_t byte : bytes) {
            uptime.advance(10ms);
            send({MIDIWords::system(0xF1, byte)});
        }
    }
    void sendRun(const TimecodePosition& label) { sendQuarterFrames(run(label)); }
    void sendSysEx(const Bytes& bytes) {
        std::vector<std::uint32_t> words;
        MIDIWords::appendSysEx(words, bytes);
        send(words);
    }
};

TEST_F(MTCClockTest, ListensToTimecodeAlone) {
    sendRun({fps25, 1, 2, 3, 4});
    const auto position = clock->currentPosition.value();
    EXPECT_EQ(position, (TimecodePosition{fps25, 1, 2, 3, 6}));
    const Bytes others[] = {{0x7F, 0x7F, 0x01, 0x02, 0x21, 0x02, 0x03, 0x09}, // user bits
                            {0x7E, 0x7F, 0x01, 0x01, 0x21, 0x02, 0x03, 0x09},
                            {0x7F, 0x7F, 0x01, 0x01, 0x21, 0x02, 0x03}, // cut short
                            {}};
    for (const Bytes& bytes : others)
        sendSysEx(bytes);
    for (int piece = 0; piece < 8; ++piece)
        send({MIDIWords::system(0xF2, std::uint8_t(piece << 4)), MIDIWords::system(0xF8),
              MIDIWords::channelVoice(0xB0, std::uint8_t(piece << 4), 1)});
    EXPECT_EQ(clock->currentPosition.value(), position);
}

TEST_F(MTCClockTest, StopsAfterHalfASecondAndNotSooner) {
    sendRun({fps25, 0, 0, 0, 23});
    uptime.advance(300ms);
    sendRun({fps25, 0, 0, 0, 23});
    sendRun({fps25, 0, 0, 1, 0});
    uptime.advance(430ms);
    sendQuarterFrames(run({fps25, 0, 0, 2, 0}, 1)); // no whole run
    clock->checkStopped();
    EXPECT_TRUE(clock->isRunning.value());
    EXPECT_TRUE(clock->frame(uptime.now()));
    uptime.advance(1ns);
    clock->checkStopped();
    EXPECT_FALSE(clock->isRunning.value());
    EXPECT_FALSE(clock->frame(uptime.now()));
    EXPECT_EQ(clock->currentPosition.value(), (TimecodePosition{fps25, 0, 0, 1, 2})) << "the counter stays";
}

TEST_F(MTCClockTest, FullFrameMovesTheCounterOfAStoppedClock) {
    int told = 0;
    const auto listener = clock->fullFrame.connect([&] { ++told; });
    sendSysEx({0x7F, 0x7F, 0x01, 0x01, 0x21, 0x02, 0x03, 0x04});
    EXPECT_EQ(clock->currentPosition.value(), (TimecodePosition{fps25, 1, 2, 3, 4}));
    EXPECT_FALSE(clock->isRunning.value());
    EXPECT_FALSE(clock->frame(uptime.now()));
    EXPECT_EQ(told, 1);
    // Any device, more bytes than needed, and the worst that the fields can hold.
    sendSysEx({0x7F, 0x05, 0x01, 0x01, 0x7F, 0x7F, 0x7F, 0x7F, 0x00});
    EXPECT_EQ(clock->currentPosition.value(), (TimecodePosition{fps30, 31, 127, 127, 127}));
    EXPECT_EQ(clock->currentPosition.value()->displayString(), QStringLiteral("31:127:127:127"));
}

TEST_F(MTCClockTest, FullFrameWhileRunningStartsAfresh) {
    sendRun({fps25, 0, 0, 0, 23});
    EXPECT_FALSE(clock->frame(uptime.now())) << "one run is not believed";
    sendRun({fps25, 0, 0, 1, 0});
    ASSERT_TRUE(clock->frame(uptime.now()));
    const auto updated = clock->lastUpdateHostTime.value();
    sendQuarterFrames(run({fps25, 0, 0, 1, 2}, 0, 5));
    uptime.advance(1ms);
    sendSysEx({0x7F, 0x7F, 0x01, 0x01, 0x25, 0x00, 0x00, 0x00});
    EXPECT_FALSE(clock->frame(uptime.now()));
    EXPECT_TRUE(clock->isRunning.value());
    EXPECT_EQ(clock->lastUpdateHostTime.value(), updated);
    EXPECT_EQ(clock->decoder, MTCDecoder());
    sendRun({fps25, 5, 0, 0, 0});
    EXPECT_FALSE(clock->frame(uptime.now()));
    sendRun({fps25, 5, 0, 0, 2});
    EXPECT_TRUE(clock->frame(uptime.now()));
}

TEST_F(MTCClockTest, LostDataEndsTheRunThatItCut) {
    sendQuarterFrames(run({fps25, 0, 0, 9, 0}, 0, 3));
    service.inject(far.out, {.packets = {}, .dataLost = true});
    QCoreApplication::sendPostedEvents();
    sendQuarterFrames(run({fps25, 0, 1, 0, 0}, 4));
    EXPECT_FALSE(clock->currentPosition.value()) << "half of one minute and half of the next";
}

TEST_F(MTCClockTest, MayGoWhileWordsWait) {
    service.transmit(far.out, std::vector<std::uint32_t>{MIDIWords::system(0xF1, 0x00)});
    clock.reset();
    QCoreApplication::sendPostedEvents();
}

// Every published position is the tape's, two frames after the label that was read, at all rates and over a minute.
TEST(MTCClock, FollowsATape) {
    for (const MTCFrameRate rate : {fps24, fps25, fps30Drop, fps30}) {
        test::Tape tape({.rate = rate});
        tape.recorder.locate({.minutes = 58, .seconds = 57});
        tape.recorder.play();
        std::vector<TimecodePosition> published;
        const auto watch =
            tape.clock.currentPosition.addNotifier([&] { published.push_back(*tape.clock.currentPosition.value()); });
        tape.roll(6s);
        EXPECT_TRUE(tape.clock.isRunning.value());
        ASSERT_GT(published.size(), 70u);
        EXPECT_EQ(published[0].displayString(), QStringLiteral("00:58:57:00")) << "the full frame";
        const std::int64_t first = TapeTimecode::tapeFrame(rate, published[0]);
        for (std::size_t i = 1; i < published.size(); ++i) {
            TimecodePosition expected = TapeTimecode::label(rate, (first + 1) / 2 * 2 + 2 * std::int64_t(i - 1));
            expected.addFrames(2);
            ASSERT_EQ(published[i], expected) << qPrintable(description(rate)) << " run " << i;
        }
        tape.recorder.stop();
        tape.roll(1s);
        EXPECT_FALSE(tape.clock.isRunning.value());
        EXPECT_EQ(tape.clock.currentPosition.value(), published.back());
    }
}

} // namespace
} // namespace tessik
