#include "TessikKit/Models/ConsoleModel.h"
#include "TessikKit/Models/FaderDBCalibration.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <gtest/gtest.h>

#include <set>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using NullMatch = ChannelState::NullMatch;

struct ConsoleModelTest : testing::Test {
    ManualUptimeClock clock;
    ConsoleModel model{clock};

    ChannelState& input(int n) { return *model.channelState(ChannelKind::input(n)); }
    void moveInputs(int first, int last, int value) {
        for (int n = first; n <= last; ++n)
            model.handle(n - 1, value);
    }
};

TEST(FaderDBCalibration, ReadsTheMeasuredLaw) {
    const struct {
        int raw;
        const char* text;
    } cases[] = {{-3, "-∞"},    {0, "-∞"},     {1, "-60.0"},  {3, "-55.0"},  {17, "-35.0"},  {100, "-2.0"},
                 {105, "-0.3"}, {106, "+0.0"}, {112, "+2.5"}, {126, "+9.4"}, {127, "+10.0"}, {200, "+10.0"}};
    for (const auto& c : cases)
        EXPECT_EQ(FaderDBCalibration::displayString(c.raw), QString::fromUtf8(c.text)) << c.raw;
    for (int raw = 1; raw <= 127; ++raw) { // also where a value lies just between two, as at 15
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), raw >= 106 ? "+%.1f" : "%.1f", *FaderDBCalibration::decibels(raw));
        EXPECT_EQ(FaderDBCalibration::displayString(raw), QLatin1String(text.data())) << raw;
    }
}

TEST_F(ConsoleModelTest, NamesFortyOneChannelsWhateverTheSize) {
    std::set<QString> ids;
    for (const ChannelState* channel : model.allVisibleChannels())
        ids.insert(channel->id);
    EXPECT_EQ(ids.size(), 41u);
    EXPECT_EQ(model.allVisibleChannels().back()->id, QStringLiteral("stereo"));
    EXPECT_EQ(model.channelState(ChannelKind::group(3))->displayName, QStringLiteral("G3"));
    for (const ChannelKind kind :
         {ChannelKind::input(0), ChannelKind::input(33), ChannelKind::input(-1),
          ChannelKind::input(std::int64_t(1) << 40), ChannelKind::group(0), ChannelKind::group(9)})
        EXPECT_EQ(model.channelState(kind), nullptr) << qPrintable(kind.id());

    model.modelSize = ConsoleModel::ModelSize::ch24;
    model.handle(24, 77); // input 25, hidden but heard
    EXPECT_EQ(model.allVisibleChannels().size(), 33u);
    EXPECT_FALSE(model.isVisible(input(25)));
    EXPECT_EQ(input(25).faderValue.value(), 77);
}

TEST_F(ConsoleModelTest, MapsEveryControllerBothWays) {
    int faders = 0;
    for (int cc = 0; cc < 128; ++cc) {
        if (const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc)) {
            ++faders;
            EXPECT_EQ(MIDIChannelMapping::faderCC(*kind), cc);
            EXPECT_EQ(MIDIChannelMapping::switchCC(*kind), cc + 64);
            EXPECT_EQ(MIDIChannelMapping::channelKindForSwitchCC(cc + 64), kind);
            EXPECT_NE(model.channelState(*kind), nullptr);
        }
    }
    EXPECT_EQ(faders, channelCount);
    for (const int cc : {40, 47, 49, 63, 104, 111, 113, 127, -1}) {
        EXPECT_FALSE(MIDIChannelMapping::channelKindForFaderCC(cc)) << cc;
        EXPECT_FALSE(MIDIChannelMapping::channelKindForSwitchCC(cc)) << cc;
    }
}

TEST(SwitchByte, IsActiveLowWithFixedBits) {
    const struct {
        ChannelSwitches switches;
        int byte;
    } cases[] = {{{}, 63},
                 {{.monMuted = true}, 62},
                 {{.auxMuted = true}, 61},
                 {{.eqOn = true}, 59},
                 {{.chanMuted = true}, 31},
                 {{true, true, true, true}, 24}};
    for (const auto& c : cases) {
        EXPECT_EQ(MIDIChannelMapping::encodeSwitchByte(c.switches), c.byte);
        EXPECT_EQ(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(c.byte)), c.switches);
    }
    EXPECT_EQ(MIDIChannelMapping::decodeSwitchByte(127), ChannelSwitches{});
    EXPECT_EQ(MIDIChannelMapping::decodeSwitchByte(0), (ChannelSwitches{true, true, true, true}));
}

TEST_F(ConsoleModelTest, HearsFadersAndSwitchesAndCountsTheRest) {
    int notices = 0;
    const auto watch = input(8).faderValue.addNotifier([&] { ++notices; });
    model.handle(7, 100);
    clock.advance(1s);
    model.handle(7, 100);
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(input(8).lastUpdate.value(), clock.now());
    model.handle(112, 31);
    EXPECT_TRUE(model.stereo().chanMuted.value());
    model.handle(40, 1);
    model.handle(127, 1);
    EXPECT_EQ(model.messageCount.value(), 5);
}

TEST_F(ConsoleModelTest, TakesSixteenFadersInHalfASecondForAStateDump) {
    moveInputs(1, 15, 50);
    moveInputs(1, 15, 51); // the same fifteen again are no more channels
    EXPECT_FALSE(model.isReceivingStateDump.value());
    EXPECT_FALSE(input(1).nullTarget.value());
    clock.advance(500ms);
    model.handle(15, 52);
    EXPECT_TRUE(model.isReceivingStateDump.value());
    EXPECT_EQ(input(1).nullTarget.value(), 51);
    EXPECT_EQ(input(16).nullTarget.value(), 52);
    EXPECT_FALSE(input(17).nullTarget.value());
    model.handle(16, 9);
    model.handle(16, 10);
    EXPECT_EQ(input(17).nullTarget.value(), 10);

    clock.advance(600ms);
    model.handle(17, 33);
    EXPECT_FALSE(model.isReceivingStateDump.value());
    EXPECT_FALSE(input(18).nullTarget.value());
    EXPECT_EQ(model.recentFaderChannelIDs().size(), 1u);
}

TEST_F(ConsoleModelTest, ForgetsReportsOlderThanHalfASecond) {
    for (int n = 1; n <= 32; ++n) { // one new channel every 40 ms: never more than 13 in the window
        model.handle(n - 1, 64);
        clock.advance(40ms);
    }
    EXPECT_FALSE(model.isReceivingStateDump.value());
    EXPECT_LE(model.recentFaderChannelIDs().size(), 13u);
}

TEST_F(ConsoleModelTest, LeavesHiddenInputsOutOfTheFirstSixteen) {
    model.modelSize = ConsoleModel::ModelSize::ch24;
    moveInputs(17, 32, 40);
    EXPECT_TRUE(model.isReceivingStateDump.value());
    EXPECT_EQ(input(24).nullTarget.value(), 40);
    EXPECT_FALSE(input(25).nullTarget.value());
}

TEST_F(ConsoleModelTest, TellsAHandWhichWayToMove) {
    const struct {
        int fader;
        std::optional<int> target;
        NullMatch match;
    } cases[] = {{64, std::nullopt, NullMatch::none}, {106, 107, NullMatch::matched}, {106, 108, NullMatch::needsUp},
                 {108, 106, NullMatch::needsDown},    {9, 10, NullMatch::needsUp}, // one step is 0.6 dB here
                 {0, 2, NullMatch::matched},          {0, 3, NullMatch::needsUp},     {3, 0, NullMatch::needsDown},
                 {2, 0, NullMatch::matched}};
    for (const auto& c : cases) {
        model.shown(0, c.fader);
        model.setNullTarget(input(1), c.target);
        EXPECT_EQ(input(1).nullMatch(), c.match) << c.fader << " to " << c.target.value_or(-1);
    }
}

} // namespace
} // namespace tessik
