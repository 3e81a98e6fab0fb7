#include "TessikAutomation/Views/Controls/ValueAnnouncer.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;

TEST(ValueAnnouncerTest, TellsFiveValuesASecondAndAlwaysTheLast) {
    ValueAnnouncer announcer(2);
    Uptime now = 1000s;
    int told = 0;
    Uptime lastTold{};
    const Uptime start = now;
    for (; now < start + 2s; now += 1ms) { // a fader that moves for two seconds
        if (announcer.note(1, now)) {
            ++told;
            lastTold = now;
        }
        for (const std::size_t control : announcer.takeDue(now)) {
            EXPECT_EQ(control, 1u);
            ++told;
            lastTold = now;
        }
    }
    EXPECT_EQ(told, 10);
    ASSERT_TRUE(announcer.nextDue());
    EXPECT_EQ(*announcer.nextDue(), lastTold + 200ms);
    EXPECT_TRUE(announcer.takeDue(*announcer.nextDue() - 1ns).empty());
    EXPECT_EQ(announcer.takeDue(*announcer.nextDue()), std::vector<std::size_t>{1});
    EXPECT_FALSE(announcer.nextDue());
    EXPECT_TRUE(announcer.note(0, now)) << "controls do not hold each other back";
}

} // namespace
} // namespace tessik
