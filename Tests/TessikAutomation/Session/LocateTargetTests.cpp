#include "TessikAutomation/Session/LocateTarget.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using enum MTCFrameRate;

TEST(LocateTarget, IsTheLocatorOrWhatStandsInForIt) {
    LocatorStore locators;
    EXPECT_EQ(LocateTarget::start(locators, std::nullopt), (TimecodePosition{fps30, 0, 0, 0, 0}));
    EXPECT_EQ(LocateTarget::start(locators, TimecodePosition{fps24, 5, 0, 0, 0}),
              (TimecodePosition{fps24, 0, 0, 0, 0}));
    locators.setStart(TimecodePosition{fps25, 1, 0, 0, 0});
    EXPECT_EQ(LocateTarget::start(locators, TimecodePosition{fps24, 5, 0, 0, 0}),
              (TimecodePosition{fps25, 1, 0, 0, 0}));

    EXPECT_EQ(LocateTarget::songEnd(locators, std::nullopt), std::nullopt);
    const TimecodePosition start{fps30, 1, 0, 0, 0};
    EXPECT_EQ(LocateTarget::songEnd(locators, LocateTarget::passEnd(start, 95)), (TimecodePosition{fps30, 1, 0, 3, 5}));
    EXPECT_EQ(LocateTarget::songEnd(locators, LocateTarget::passEnd(start, std::nullopt)), start);
    locators.setEnd(TimecodePosition{fps25, 2, 0, 0, 0});
    EXPECT_EQ(LocateTarget::songEnd(locators, start), locators.end());
}

} // namespace
} // namespace tessik
