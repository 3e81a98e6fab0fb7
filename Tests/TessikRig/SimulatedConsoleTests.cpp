#include "Support/Events.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikKit/Models/MIDIChannelMapping.h"
#include "TessikRig/SimulatedConsole.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;

struct SimulatedConsoleTest : testing::Test {
    ManualUptimeClock clock;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, clock};
    SimulatedConsole desk{service, clock};
    std::vector<MIDIWord> heard;
    MIDIInputConnection listener{service, QStringLiteral("Test"),
                                 [this](const MIDIWord& word) { heard.push_back(word); }};
    MIDIClientRef client = 0;
    MIDIPortRef port = 0;

    SimulatedConsoleTest() {
        listener.selectSource(listener.availableSources.value().front().uniqueID);
        service.createClient(QStringLiteral("Sender"), {}, client);
        service.createOutputPort(client, QStringLiteral("Sender Port"), port);
    }
    void send(std::uint32_t word) {
        service.send(port, service.destinations().front().ref, {&word, 1});
        runPosted();
    }
    void pass(Uptime time) {
        clock.advance(time);
        desk.advance();
    }
};

TEST_F(SimulatedConsoleTest, ListensOnItsOwnChannelAndEchoesNothing) {
    const ChannelKind in3 = ChannelKind::input(3);
    desk.moveFader(in3, 20);
    pass(2ms);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].data1(), 2);
    send(MIDIWords::controlChange(2, 2, 99));
    pass(2ms);
    EXPECT_EQ(desk.vca(in3), 20);
    send(MIDIWords::controlChange(1, 2, 99));
    pass(900us);
    EXPECT_EQ(desk.vca(in3), 20) << "three bytes take 960 µs";
    pass(60us);
    EXPECT_EQ(desk.vca(in3), 99);
    EXPECT_EQ(desk.physicalFader(in3), 20) << "no motor moves the fader";
    EXPECT_EQ(heard.size(), 1u);
}

TEST_F(SimulatedConsoleTest, TransmitsAWholeSceneAtTheCablesSpeed) {
    desk.recallScene(2);
    pass(40ms);
    EXPECT_NEAR(double(heard.size()), 41, 1);
    pass(40ms);
    EXPECT_EQ(heard.size(), 82u);
    EXPECT_TRUE(desk.isQuiet());
    for (const MIDIWord& word : heard) {
        const auto fader = MIDIChannelMapping::channelKindForFaderCC(word.data1());
        if (fader) {
            EXPECT_EQ(desk.vca(*fader), word.data2());
        }
    }
    desk.moveFader(ChannelKind::input(1), 3);
    desk.storeScene(5);
    desk.recallScene(2);
    EXPECT_NE(desk.vca(ChannelKind::input(1)), 3);
    desk.recallScene(5);
    EXPECT_EQ(desk.vca(ChannelKind::input(1)), 3);
}

TEST_F(SimulatedConsoleTest, DropsWhatItsBufferCannotHold) {
    for (int i = 0; i < 60; ++i)
        send(MIDIWords::controlChange(1, i % 32, 50)); // 180 bytes at once into 128
    EXPECT_EQ(desk.droppedBytes(), 180 - 128);
    pass(1s);
    EXPECT_TRUE(desk.isQuiet());
    for (int i = 0; i < 60; ++i) {
        send(MIDIWords::controlChange(1, i % 32, 51));
        pass(1ms);
    }
    EXPECT_EQ(desk.droppedBytes(), 180 - 128);
}

TEST(ChannelMessageParser, FollowsRunningStatusThroughOtherTraffic) {
    ChannelMessageParser parser;
    std::vector<int> seen;
    for (const int byte :
         {0x05, 0xB0, 0x01, 0xF8, 0x02, 0x03, 0x04, 0xF0, 0x11, 0x12, 0xF7, 0x01, 0x02, 0xC0, 0x01, 0xB1, 0x7F, 0x00})
        if (const auto message = parser.feed(std::uint8_t(byte)))
            seen.insert(seen.end(), {message->status, message->data1, message->data2});
    EXPECT_EQ(seen, (std::vector<int>{0xB0, 1, 2, 0xB0, 3, 4, 0xB1, 0x7F, 0}));
}

} // namespace
} // namespace tessik
