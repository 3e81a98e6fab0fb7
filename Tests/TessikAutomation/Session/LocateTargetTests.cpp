#include "TessikAutomation/Session/LocateTarget.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using enum MTCFrameRate;

TEST(LocateTarget, IsWhatStandsInForALocator) {
    const LocatorStore locators;
    EXPECT_EQ(LocateTarget::start(locators, std::nullopt), (TimecodePosition{fps30, 0, 0, 0, 0}));
    EXPECT_EQ(LocateTarget::start(locators, TimecodePosition{fps24, 5, 0, 0, 0}),
              (TimecodePosition{fps24, 0, 0, 0, 0}));
    const TimecodePosition start{fps30, 1, 0, 0, 0};
    EXPECT_EQ(LocateTarget::passEnd(start, 95), (TimecodePosition{fps30, 1, 0, 3, 5}));
    EXPECT_EQ(LocateTarget::passEnd(start, std::nullopt), start);
}

} // namespace
} // namespace tessik
