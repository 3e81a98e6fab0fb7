#include "TessikAutomation/Automation/PassLanes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tessik {
namespace {

const ChannelKind ridden = ChannelKind::input(3);
const ChannelKind muted = ChannelKind::group(1);

AutomationPass randomPass(unsigned seed) {
    std::minstd_rand random(seed);
    AutomationPass pass;
    pass.initialState = QList<ChannelSnapshot>{{.kind = ridden, .faderValue = 40}, {.kind = muted, .eqOn = true}};
    for (int i = 0; i < 400; ++i) {
        const auto offset = std::int64_t(random() % 300);
        pass.events.append({offset, ridden, PassEventValue::fader(std::int64_t(random() % 128))});
        pass.events.append({offset, muted, PassEventValue::switches({.eqOn = true, .chanMuted = random() % 2 == 0})});
    }
    pass.events.append({10, ChannelKind::input(40), PassEventValue::fader(1)}); // there is no such channel
    pass.sortEvents();
    return pass;
}

TEST(PassLanes, ListsWhatMovesAndSwitchesThatChange) {
    const PassLanes lanes(randomPass(1));
    ASSERT_EQ(lanes.channels().size(), 2u);
    EXPECT_EQ(lanes.channels()[0].kind, ridden);
    EXPECT_TRUE(lanes.channels()[0].fader);
    EXPECT_EQ(lanes.channels()[0].events, 400);
    EXPECT_EQ(lanes.channels()[1].kind, muted);
    EXPECT_FALSE(lanes.channels()[1].fader);
    EXPECT_EQ(lanes.channels()[1].switches, (ChannelSwitches{.chanMuted = true})) << "EQ is on from start to end";
    EXPECT_LT(lanes.lastOffset(), 300);
    EXPECT_EQ(PassLanes(AutomationPass()).lastOffset(), 0);
}

TEST(PassLanes, AColumnIsEverythingThatAValueWasInIt) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        const AutomationPass pass = randomPass(seed);
        const PassLanes lanes(pass);
        const double from = seed * 3.3 - 10, width = seed * 0.37;
        constexpr int columns = 90;
        for (const ChannelKind kind : {ridden, muted}) {
            const bool isFader = kind == ridden;
            const int cc = isFader ? MIDIChannelMapping::faderCC(kind) : MIDIChannelMapping::switchCC(kind);
            int visited = 0;
            lanes.visitColumns(cc, from, width, columns, [&](int column, const PassLanes::Extent& extent) {
                ++visited;
                const double begin = from + column * width, end = from + (column + 1) * width;
                int held = isFader ? 40 : MIDIChannelMapping::encodeSwitchByte({.eqOn = true});
                int low = 255, high = 0, common = 255;
                const auto add = [&](int value) {
                    low = std::min(low, value);
                    high = std::max(high, value);
                    common &= value;
                };
                for (const TimedEvent& event : pass.events) {
                    const auto lane = LaneEvent::of(event);
                    if (!lane || lane->cc != cc || double(lane->frameOffset) >= end) continue;
                    if (double(lane->frameOffset) >= begin) add(lane->value);
                    if (double(lane->frameOffset) < begin) held = lane->value;
                }
                add(held);
                EXPECT_EQ(extent, (PassLanes::Extent{std::uint8_t(low), std::uint8_t(high), std::uint8_t(common)}))
                    << "column " << column;
                EXPECT_EQ(lanes.valueAt(cc, std::int64_t(std::ceil(begin)) - 1), held);
            });
            EXPECT_EQ(visited, columns);
        }
        lanes.visitColumns(0, 0, 1, 10, [](int, const PassLanes::Extent&) { FAIL() << "nothing is known of input 1"; });
    }
}

} // namespace
} // namespace tessik
