#include "Support/Events.h"
#include "Support/FarDesk.h"
#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using Urgency = MIDIOutputManager::Urgency;

using Sent = std::vector<std::pair<int, int>>; // controllers and values

struct OutputTest : testing::Test {
    ManualUptimeClock clock;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, clock};
    FarDesk desk{service};
    Sent& sent = desk.received;
    DeskLink link{service, QStringLiteral("Test"), clock};
    MIDIOutputManager& output = link.output;
    const std::int32_t deskID = desk.inID();

    OutputTest() {
        output.setupClient();
        output.refreshDestinations();
        output.selectDestination(deskID);
    }
    Sent pumpFor(Uptime time) {
        for (const Uptime end = clock.now() + time; clock.now() < end;) {
            clock.advance(1ms);
            output.pump();
        }
        return std::exchange(sent, {});
    }
};

const ChannelKind in1 = ChannelKind::input(1);
const ChannelKind in2 = ChannelKind::input(2);

TEST_F(OutputTest, SendsOnTheConsolesChannelHeldToItsRange) {
    for (const auto& [channel, status] : {std::pair{1, 0xB0}, {16, 0xBF}, {0, 0xB0}, {99, 0xBF}, {-7, 0xB0}}) {
        output.midiChannel = channel;
        pumpFor(2ms);
        output.sendSwitches(ChannelKind::stereo(), {.chanMuted = true});
        EXPECT_EQ(pumpFor(2ms), (Sent{{112, 31}}));
        EXPECT_EQ(desk.lastStatus, status);
    }
    output.sendFader(ChannelKind::group(8), 300);
    EXPECT_EQ(pumpFor(2ms).front().second, 127);
}

TEST_F(OutputTest, KeepsTheCablesPaceAndTheLatestValue) {
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
    const std::vector<DeskChannelState> state{
        {in1, 100, {.eqOn = true}}, {in2, 90, {.chanMuted = true}}, {ChannelKind::stereo(), 106, {}}};
    output.assertState(state);
    EXPECT_EQ(pumpFor(10ms), (Sent{{65, 31}, // the mute first
                                   {0, 100},
                                   {1, 90},
                                   {48, 106},
                                   {64, 59},
                                   {112, 63}}));

    // Of two in a row, the later one's faders at full wait for its mutes.
    ControllerValues low, muted;
    for (int n = 0; n < 32; ++n) {
        low[std::size_t(n)] = 0;
        low[std::size_t(n + 64)] = 63;
        muted[std::size_t(n)] = 127;
        muted[std::size_t(n + 64)] = 31;
    }
    output.assertState(low);
    output.assertState(muted);
    std::array<bool, 32> isMuted{};
    for (const auto& [cc, value] : pumpFor(200ms)) {
        EXPECT_TRUE(cc >= 64 || value == 0 || isMuted[std::size_t(cc)]) << cc;
        if (cc >= 64) isMuted[std::size_t(cc - 64)] = value == 31;
    }
}

TEST_F(OutputTest, LetsACorrectionPass) {
    for (int n = 1; n <= 32; ++n)
        output.sendFader(ChannelKind::input(n), 10);
    sent.clear();
    output.sendFader(ChannelKind::stereo(), 7, Urgency::correction);
    output.sendFader(ChannelKind::input(30), 11, Urgency::correction);
    EXPECT_EQ(pumpFor(2ms), (Sent{{29, 11}, {48, 7}}));
}

TEST_F(OutputTest, OwesAnAbsentDeskWhatWasAsked) {
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
    EXPECT_EQ(pumpFor(10ms), (Sent{{65, 31}, {0, 33}}));

    output.selectDestination(std::nullopt); // another desk is owed nothing
    output.selectDestination(deskID);
    EXPECT_TRUE(pumpFor(1s).empty());
}

TEST_F(OutputTest, BelievesNothingOfAHandThatCrossedWhenTheDeskCannotBeTold) {
    output.sendFader(in1, 40);
    service.unplug(QStringLiteral("Desk In"));
    runPosted();
    sent.clear();
    output.noteReceived(clock.now(), 0, 90); // before or after the 40 landed?
    EXPECT_EQ(output.believedValue(0), std::nullopt);
    service.plug(QStringLiteral("Desk In"));
    runPosted();
    EXPECT_EQ(pumpFor(10ms), (Sent{{0, 90}}));
}

TEST_F(OutputTest, KeepsWhatThePortWouldNotTakeYet) {
    for (const MIDIStatus status : {midiWouldBlock, -19}) {
        service.failNext(VirtualMIDIService::Operation::send, status);
        output.sendFader(in1, 40);
        EXPECT_TRUE(sent.empty());
        EXPECT_EQ(pumpFor(5ms), (Sent{{0, 40}})) << status;
    }
}

TEST_F(OutputTest, NeverPullsAHandInSteadyMotion) {
    for (const Uptime pace : {1ms, 2ms, 4ms, 6ms, 12ms, 15ms}) {
        output.sendFader(in1, 0);
        pumpFor(1ms);
        Sent back;
        for (int value = 1; value < 128; ++value) {
            output.noteReceived(clock.now(), 0, value);
            for (const auto& message : pumpFor(pace))
                back.push_back(message);
        }
        EXPECT_LE(back.size(), pace < 5ms ? 0u : 1u) << pace / 1ms;
        EXPECT_EQ(output.believedValue(0), 127);
        EXPECT_TRUE(pumpFor(1s).empty());
    }
}

/// What goes out comes in, as over a cable from Out to In.
struct LoopTest : OutputTest {
    ConsoleModel& model = link.model;
    MIDIManager& input = link.input;
    Uptime delay = 1ms;
    bool isCut = false;
    std::int64_t count = 0;

    LoopTest() { input.connection.selectSource(desk.outID()); }
    void run(Uptime time) {
        for (const Uptime end = clock.now() + time; clock.now() < end;) {
            clock.advance(1ms);
            output.pump();
            for (const auto& [cc, value] : std::exchange(sent, {})) {
                ++count;
                _inside.push_back({clock.now() + delay, MIDIWords::controlChange(1, cc, value)});
            }
            for (; !_inside.empty() && _inside.front().first <= clock.now(); _inside.pop_front())
                if (!isCut) service.transmit(desk.out, {&_inside.front().second, 1});
            runPosted();
        }
    }

private:
    std::deque<std::pair<Uptime, std::uint32_t>> _inside;
};

TEST_F(LoopTest, SendsNothingOfItsOwnAccord) {
    for (const Uptime itsDelay : {0ms, 1ms, 3ms, 8ms}) {
        delay = itsDelay;
        count = 0;
        for (int value = 0; value < 100; ++value) { // dragged on screen
            output.sendFader(in1, value, Urgency::playback);
            run(2ms);
        }
        run(60s);
        EXPECT_EQ(count, 100) << itsDelay / 1ms;
        EXPECT_EQ(output.believedValue(0), 99);
    }
}

TEST_F(LoopTest, KeepsItsEchoesFromTheModelUntilOneFailsToCome) {
    const auto drag = [this](int times) {
        for (int i = 0; i < times; ++i) {
            output.sendFader(in1, 20 + i);
            run(5ms);
        }
    };
    drag(9);
    const std::uint32_t hand = MIDIWords::controlChange(1, 5, 60);
    service.transmit(desk.out, {&hand, 1});
    drag(9);
    EXPECT_FALSE(output.isLoop.value()) << "something else came between";
    drag(1);
    EXPECT_TRUE(output.isLoop.value());
    EXPECT_EQ(model.messageCount.value(), 19) << "all but the last";
    drag(50);
    service.transmit(desk.out, {&hand, 1});
    run(5ms);
    EXPECT_EQ(model.messageCount.value(), 20) << "hands are heard all the same";
    isCut = true;
    drag(1);
    run(300ms);
    EXPECT_FALSE(output.isLoop.value());
    isCut = false;
    drag(1);
    EXPECT_EQ(model.messageCount.value(), 21);
}

} // namespace
} // namespace tessik
