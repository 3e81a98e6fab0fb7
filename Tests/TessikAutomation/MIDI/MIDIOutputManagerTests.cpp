#include "Support/Events.h"
#include "TessikAutomation/MIDI/MIDIOutputManager.h"
#include "TessikKit/MIDI/MIDIManager.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedConsole.h"

#include <gtest/gtest.h>

#include <random>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using Urgency = MIDIOutputManager::Urgency;

struct Sent {
    int status, cc, value;
    friend bool operator==(const Sent&, const Sent&) = default;
    friend void PrintTo(const Sent& sent, std::ostream* out) {
        *out << std::hex << sent.status << std::dec << " cc" << sent.cc << "=" << sent.value;
    }
};

/// A destination that writes down what reaches it.
struct OutputTest : testing::Test {
    ManualUptimeClock clock;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, clock};
    MIDIClientRef far = 0;
    MIDIEndpointRef deskIn = 0;
    std::vector<Sent> sent;
    MIDIOutputManager output{service, clock};
    std::int32_t deskID = 0;

    OutputTest() {
        service.createClient(QStringLiteral("Far"), {}, far);
        service.createDestination(
            far, QStringLiteral("Desk In"),
            [this](const MIDIEventList& list) {
                for (const MIDIEventPacket& packet : list.packets)
                    for (const std::uint32_t word : packet.words)
                        sent.push_back({int(word >> 16 & 0xFF), int(word >> 8 & 0x7F), int(word & 0x7F)});
            },
            deskIn);
        output.setupClient();
        output.refreshDestinations();
        deskID = output.port.availableDestinations.value().front().uniqueID;
    }
    std::vector<Sent> pumpFor(Uptime time) {
        for (const Uptime end = clock.now() + time; clock.now() < end;) {
            clock.advance(1ms);
            output.pump();
        }
        return std::exchange(sent, {});
    }
};

const ChannelKind in1 = ChannelKind::input(1);
const ChannelKind in2 = ChannelKind::input(2);

TEST_F(OutputTest, WordsTheChoiceOfADestination) {
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Not connected"));
    output.selectDestination(12345);
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Not connected"));
    EXPECT_EQ(output.port.connectedDestinationID.value(), 12345);
    output.refreshDestinations();
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Output: reconnecting…"));
    output.selectDestination(deskID);
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Output: Desk In"));
    service.unplug(QStringLiteral("Desk In"));
    runPosted();
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Output: reconnecting…"));
    service.hideName(QStringLiteral("Desk In"));
    service.plug(QStringLiteral("Desk In"));
    runPosted();
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Output: Unknown MIDI Destination"));
    output.selectDestination(std::nullopt);
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Not connected"));
    output.sendFader(in1, 5);
    EXPECT_TRUE(pumpFor(100ms).empty());
}

TEST_F(OutputTest, SendsOnTheConsolesChannelHeldToItsRange) {
    output.selectDestination(deskID);
    for (const auto& [channel, status] : {std::pair{1, 0xB0}, {16, 0xBF}, {0, 0xB0}, {99, 0xBF}, {-7, 0xB0}}) {
        output.midiChannel = channel;
        output.sendSwitches(ChannelKind::stereo(), {.chanMuted = true});
        EXPECT_EQ(pumpFor(2ms), (std::vector<Sent>{{status, 112, 31}}));
    }
    output.sendFader(ChannelKind::group(8), 300);
    EXPECT_EQ(pumpFor(2ms).front().value, 127);
}

TEST_F(OutputTest, KeepsTheCablesPaceAndTheLatestValue) {
    output.selectDestination(deskID);
    for (int value = 0; value <= 100; ++value)
        for (int n = 1; n <= 32; ++n)
            output.sendFader(ChannelKind::input(n), value);
    EXPECT_EQ(sent.size(), 16u) << "a pause saves up a burst of 16";
    EXPECT_GT(output.overtakenCount(), 0);
    EXPECT_NEAR(double(pumpFor(10ms).size()), 26, 1);
    const auto rest = pumpFor(1s);
    for (int n = 0; n < 32; ++n)
        EXPECT_EQ(output.believedValue(n), 100);
    EXPECT_FALSE(output.isBusy());
    EXPECT_LE(rest.size(), 32u);
}

TEST_F(OutputTest, SkipsOnlyPlaybackThatTheDeskHolds) {
    output.selectDestination(deskID);
    output.sendFader(in1, 50, Urgency::playback);
    output.sendFader(in1, 50, Urgency::playback);
    EXPECT_EQ(sent.size(), 1u);
    output.sendFader(in1, 50, Urgency::assertion);
    EXPECT_EQ(sent.size(), 2u);
    clock.advance(1s);
    output.noteReceived(clock.now(), 0, 60);
    output.sendFader(in1, 60, Urgency::playback);
    EXPECT_EQ(sent.size(), 2u);
    output.sendFader(in1, 50, Urgency::playback);
    EXPECT_EQ(sent.size(), 3u);
}

TEST_F(OutputTest, SendsAWholeStateInTheOrderThatIsSafeToTheEar) {
    output.selectDestination(deskID);
    const std::vector<DeskChannelState> state{
        {in1, 100, {.eqOn = true}}, {in2, 90, {.chanMuted = true}}, {ChannelKind::stereo(), 106, {}}};
    output.assertState(state);
    EXPECT_EQ(pumpFor(10ms), (std::vector<Sent>{{0xB0, 65, 31}, // the mute first
                                                {0xB0, 0, 100},
                                                {0xB0, 1, 90},
                                                {0xB0, 48, 106},
                                                {0xB0, 64, 59},
                                                {0xB0, 112, 63}}));
}

TEST_F(OutputTest, LetsACorrectionPass) {
    output.selectDestination(deskID);
    for (int n = 1; n <= 32; ++n)
        output.sendFader(ChannelKind::input(n), 10);
    sent.clear();
    output.sendFader(ChannelKind::stereo(), 7, Urgency::correction);
    output.sendFader(ChannelKind::input(30), 11, Urgency::correction);
    const auto next = pumpFor(2ms);
    EXPECT_EQ(next, (std::vector<Sent>{{0xB0, 29, 11}, {0xB0, 48, 7}}));
}

TEST_F(OutputTest, OwesAnAbsentDeskWhatWasAsked) {
    output.selectDestination(deskID);
    output.sendFader(in1, 10);
    output.sendFader(in2, 20);
    pumpFor(10ms);
    service.unplug(QStringLiteral("Desk In"));
    runPosted();
    EXPECT_EQ(output.believedValue(0), std::nullopt);
    output.sendFader(in1, 33);
    output.sendSwitches(in2, {.chanMuted = true});
    output.noteReceived(clock.now(), 1, 77); // a hand moved in2 meanwhile: nothing is owed there
    EXPECT_TRUE(pumpFor(1s).empty());
    service.plug(QStringLiteral("Desk In"));
    runPosted();
    EXPECT_EQ(pumpFor(10ms), (std::vector<Sent>{{0xB0, 65, 31}, {0xB0, 0, 33}}));

    output.selectDestination(std::nullopt); // another desk is owed nothing
    output.selectDestination(deskID);
    EXPECT_TRUE(pumpFor(1s).empty());
}

TEST_F(OutputTest, BelievesNothingOfAHandThatCrossedWhenTheDeskCannotBeTold) {
    output.selectDestination(deskID);
    output.sendFader(in1, 40);
    service.unplug(QStringLiteral("Desk In"));
    runPosted();
    sent.clear();
    output.noteReceived(clock.now(), 0, 90); // before or after the 40 landed?
    EXPECT_EQ(output.believedValue(0), std::nullopt);
    service.plug(QStringLiteral("Desk In"));
    runPosted();
    EXPECT_EQ(pumpFor(10ms), (std::vector<Sent>{{0xB0, 0, 90}}));
}

TEST_F(OutputTest, KeepsWhatThePortWouldNotTakeYet) {
    output.selectDestination(deskID);
    for (const MIDIStatus status : {midiWouldBlock, -19}) {
        service.failNext(VirtualMIDIService::Operation::send, status);
        output.sendFader(in1, 40);
        EXPECT_TRUE(sent.empty());
        EXPECT_EQ(pumpFor(5ms), (std::vector<Sent>{{0xB0, 0, 40}})) << status;
    }
}

TEST_F(OutputTest, AgreesWithAHandThatMovedAtTheSameMoment) {
    output.selectDestination(deskID);
    output.sendFader(in1, 40);
    pumpFor(2ms);
    output.noteReceived(clock.now(), 0, 90); // 2 ms after our send: the two crossed
    EXPECT_EQ(pumpFor(3ms), (std::vector<Sent>{{0xB0, 0, 90}}));
    clock.advance(10ms);
    output.noteReceived(clock.now(), 0, 91);
    EXPECT_TRUE(pumpFor(5ms).empty());

    output.noteReceived(clock.now(), 255, 91); // a malformed word's: no such controller
    EXPECT_TRUE(pumpFor(5ms).empty());

    for (int n = 1; n <= 32; ++n)
        output.sendFader(ChannelKind::input(n), 10);
    sent.clear();
    output.noteReceived(clock.now(), 31, 55); // still waiting: the hand wins
    for (const Sent& message : pumpFor(100ms))
        EXPECT_NE(message.cc, 31);
}

TEST_F(OutputTest, ZeroesTheModelAndOnlyOnRequestTheDesk) {
    ConsoleModel model(clock);
    model.modelSize = ConsoleModel::ModelSize::ch24;
    for (int cc = 0; cc < 49; ++cc)
        model.handle(cc, 100);
    model.handle(64, 24);
    output.selectDestination(deskID);
    output.resetChannels(model, false);
    EXPECT_EQ(model.inputs()[0]->faderValue.value(), 0);
    EXPECT_FALSE(model.inputs()[0]->nullTarget.value());
    EXPECT_EQ(model.inputs()[0]->switches(), ChannelSwitches{});
    EXPECT_EQ(model.inputs()[30]->faderValue.value(), 100) << "hidden channels are left alone";
    EXPECT_TRUE(pumpFor(200ms).empty());
    output.resetChannels(model, true);
    EXPECT_EQ(pumpFor(200ms).size(), 33u * 2);
}

// The desk at the far end of its own slow cable ends on what was asked last, whatever the interleaving.
TEST(MIDIOutputToTheRig, DeskEndsEqualToTheModel) {
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::minstd_rand random(seed);
        const auto upTo = [&random](int n) { return int(random() % std::uint32_t(n)); };
        ManualUptimeClock clock;
        VirtualMIDIService service(VirtualMIDIService::Delivery::synchronous, clock);
        SimulatedConsole desk(service, clock);
        ConsoleModel model(clock);
        MIDIManager input(service, model, QStringLiteral("Test"));
        MIDIOutputManager output(service, clock);
        output.setupClient();
        output.refreshDestinations();
        output.selectDestination(output.port.availableDestinations.value().front().uniqueID);
        input.connection.selectSource(input.connection.availableSources.value().front().uniqueID);
        input.onControlChange = [&](Uptime stamp, int cc, int value) { output.noteReceived(stamp, cc, value); };
        const std::vector<ChannelKind> kinds = desk.channels();
        const auto pass = [&](Uptime time) {
            for (const Uptime end = clock.now() + time; clock.now() < end;) {
                clock.advance(500us);
                runPosted();
                desk.advance();
                output.pump();
            }
        };
        for (int step = 0; step < 1000; ++step) {
            const ChannelKind kind = kinds[std::size_t(upTo(int(kinds.size())))];
            ChannelState& channel = *model.channelState(kind);
            switch (upTo(20)) {
            case 0:
                if (upTo(10) == 0) desk.recallScene(upTo(SimulatedConsole::sceneCount));
                break;
            case 1: desk.setSwitches(kind, MIDIChannelMapping::decodeSwitchByte(std::uint8_t(upTo(128)))); break;
            case 2:
            case 3:
            case 4: desk.moveFader(kind, upTo(128)); break;
            case 5:
                channel.setSwitches(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(upTo(128))));
                output.sendSwitches(kind, channel.switches());
                break;
            default: channel.faderValue = upTo(128); output.sendFader(kind, channel.faderValue.value());
            }
            if (upTo(3) == 0) pass(Uptime(upTo(4'000'000)));
        }
        pass(1s);
        for (const ChannelKind kind : kinds) {
            EXPECT_EQ(desk.vca(kind), model.channelState(kind)->faderValue.value()) << qPrintable(kind.id());
            EXPECT_EQ(desk.switches(kind), model.channelState(kind)->switches()) << qPrintable(kind.id());
            EXPECT_EQ(output.believedValue(MIDIChannelMapping::faderCC(kind)).value_or(0), desk.vca(kind));
        }
        EXPECT_EQ(desk.droppedBytes(), 0);
    }
}

} // namespace
} // namespace tessik
