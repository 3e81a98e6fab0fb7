#include "TessikAutomation/Views/Controls/ValueAnnouncer.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;

TEST(ValueAnnouncerTest, TellsFiveValuesASecondAndAlwaysTheLast) {
    ValueAnnouncer announcer(2);
    const Uptime start = 1000s;
    std::vector<Uptime> told;
    for (Uptime now = start; now < start + 2s; now += 1ms) { // a fader that moves for two seconds
        if (announcer.note(1, now)) told.push_back(now);
        if (!announcer.takeDue(now).empty()) told.push_back(now);
    }
    EXPECT_EQ(told.size(), 10u);
    ASSERT_EQ(announcer.nextDue(), told.back() + 200ms);
    EXPECT_TRUE(announcer.note(0, start + 2s)) << "controls do not hold each other back";
    EXPECT_TRUE(announcer.takeDue(told.back() + 200ms - 1ns).empty());
    EXPECT_EQ(announcer.takeDue(told.back() + 200ms), std::vector<std::size_t>{1});
}

} // namespace
} // namespace tessik
