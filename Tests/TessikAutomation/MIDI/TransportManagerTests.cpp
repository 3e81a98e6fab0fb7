#include "Support/CleanSettings.h"
#include "Support/Events.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikKit/MIDI/SysExAssembler.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using enum MTCFrameRate;
using Bytes = std::vector<std::uint8_t>;

struct TransportManagerTest : testing::Test, CleanSettings {
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous};
    MIDIClientRef recorder = 0;
    MIDIEndpointRef destination = 0;
    SysExAssembler assembler;
    std::vector<Bytes> received;
    int lists = 0;

    TransportManagerTest() {
        service.createClient(QStringLiteral("Recorder"), {}, recorder);
        const auto receive = [this](const MIDIEventList& list) {
            ++lists;
            for (const MIDIEventPacket& packet : list.packets)
                for (std::size_t i = 0; i + 1 < packet.words.size(); i += 2)
                    if (const auto message = assembler.take(packet.words[i], packet.words[i + 1]))
                        received.emplace_back(message->begin(), message->end());
        };
        service.createDestination(recorder, QStringLiteral("Recorder"), receive, destination);
    }
    std::int32_t recorderID() const { return *service.destinations().front().uniqueID; }
};

TEST_F(TransportManagerTest, TriesAgainWhatThePortWouldNotTakeYetAndShowsALoss) {
    using namespace std::chrono_literals;
    ManualUptimeClock clock;
    TransportManager transport(service, clock);
    transport.selectDestination(recorderID());
    const auto fill = [this] { service.failNext(VirtualMIDIService::Operation::send, midiWouldBlock); };
    fill();
    transport.send(MMCCommand::stop);
    fill();
    transport.send(MMCCommand::play);
    EXPECT_TRUE(received.empty());
    transport.pump();
    EXPECT_EQ(received, (std::vector<Bytes>{{0x7F, 0x7F, 0x06, 1}, {0x7F, 0x7F, 0x06, 2}})) << "in their order";

    fill();
    transport.send(MMCCommand::stop);
    clock.advance(2s);
    fill();
    transport.pump();
    EXPECT_EQ(transport.port.refusal.value(), midiWouldBlock);
    transport.send(MMCCommand::play);
    EXPECT_EQ(received.size(), 3u);
    EXPECT_EQ(transport.port.refusal.value(), 0);
}

TEST_F(TransportManagerTest, SendsTheStandardsBytes) {
    TransportManager transport(service);
    transport.selectDestination(recorderID());
    using enum MMCCommand;
    std::vector<Bytes> expected;
    for (const std::uint8_t code : {1, 2, 4, 5, 6, 7, 9})
        expected.push_back({0x7F, 0x7F, 0x06, code});
    for (const MMCCommand command : {stop, play, fastForward, rewind, recordStrobe, recordExit, pause})
        transport.send(command);
    EXPECT_EQ(received, expected);
    struct Locate {
        std::uint8_t deviceID;
        TimecodePosition to;
        Bytes bytes;
    };
    const Locate locates[] = {
        {127, {fps25, 1, 2, 3, 4}, {0x7F, 0x7F, 0x06, 0x44, 0x06, 0x01, 0x21, 0x02, 0x03, 0x04, 0x00}},
        {0, {fps24, 23, 59, 58, 23}, {0x7F, 0x00, 0x06, 0x44, 0x06, 0x01, 0x17, 0x3B, 0x3A, 0x17, 0x00}},
        {5, {fps30Drop, 0, 0, 0, 0}, {0x7F, 0x05, 0x06, 0x44, 0x06, 0x01, 0x40, 0x00, 0x00, 0x00, 0x00}},
        {5, {fps30, 24, 0, 1, 29}, {0x7F, 0x05, 0x06, 0x44, 0x06, 0x01, 0x60, 0x00, 0x01, 0x1D, 0x00}}, // a day on
        {5, {fps30, 49, 0, 0, 29}, {0x7F, 0x05, 0x06, 0x44, 0x06, 0x01, 0x61, 0x00, 0x00, 0x1D, 0x00}},
        // Whatever a file or a hostile source put there, no byte looks like a status.
        {255, {fps30, -1, 200, 1000, -1}, {0x7F, 0x7F, 0x06, 0x44, 0x06, 0x01, 0x77, 0x48, 0x68, 0x7F, 0x00}},
    };
    for (const Locate& c : locates) {
        transport.setDeviceID(c.deviceID);
        lists = 0;
        transport.locate(c.to);
        EXPECT_EQ(received.back(), c.bytes) << qPrintable(c.to.displayString());
        EXPECT_EQ(lists, 1) << "one message in one piece";
    }
    transport.setDeviceID(0);
    transport.send(stop);
    EXPECT_EQ(received.back(), (Bytes{0x7F, 0x00, 0x06, 0x01}));
}

TEST_F(TransportManagerTest, RemembersTheDeviceID) {
    TransportManager transport(service);
    EXPECT_EQ(transport.deviceID.value(), 127);
    int notified = 0;
    const auto watch = transport.deviceID.addNotifier([&] { ++notified; });
    transport.setDeviceID(0);
    EXPECT_EQ(SavedSettings::mmcDeviceID(), 0);
    SavedSettings::remove(SavedSettings::Key::mmcDeviceID);
    transport.setDeviceID(0);
    EXPECT_EQ(SavedSettings::mmcDeviceID(), 0) << "an equal choice is stored too";
    EXPECT_EQ(notified, 1);
    EXPECT_EQ(TransportManager(service).deviceID.value(), 0);
}

TEST_F(TransportManagerTest, SendsOnlyToTheChosenDestinationWhileItIsThere) {
    TransportManager transport(service);
    const auto status = [&] { return transport.port.statusText.value(); };
    EXPECT_EQ(status(), QStringLiteral("Not connected"));
    transport.send(MMCCommand::play);
    transport.selectDestination(recorderID());
    EXPECT_EQ(status(), QStringLiteral("Transport: Recorder"));
    service.unplug(QStringLiteral("Recorder"));
    runPosted();
    EXPECT_EQ(status(), QStringLiteral("Transport: reconnecting…"));
    transport.locate({});
    EXPECT_TRUE(received.empty());
    service.plug(QStringLiteral("Recorder"));
    runPosted();
    EXPECT_EQ(status(), QStringLiteral("Transport: Recorder"));
    transport.send(MMCCommand::play);
    EXPECT_EQ(received.size(), 1u);
    transport.selectDestination(std::nullopt);
    EXPECT_EQ(status(), QStringLiteral("Not connected"));
    transport.send(MMCCommand::stop);
    EXPECT_EQ(received.size(), 1u);
}

} // namespace
} // namespace tessik
