#include "TessikAutomation/Session/LocatorStore.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(LocatorStore, AnEqualAssignmentIsAChangeButNoNews) {
    LocatorStore store;
    int changes = 0;
    int notices = 0;
    store.onChange = [&] { ++changes; };
    const auto start = store.bindableStart().addNotifier([&] { ++notices; });
    const auto end = store.bindableEnd().addNotifier([&] { ++notices; });
    const TimecodePosition position{.frameRate = MTCFrameRate::fps25, .seconds = 1};
    store.setStart(position);
    store.setStart(position);
    store.setEnd(std::nullopt);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(notices, 1);
    store.setStart(TimecodePosition{.frameRate = MTCFrameRate::fps30, .seconds = 1}); // the rate counts too
    EXPECT_EQ(notices, 2);
}

} // namespace
} // namespace tessik
