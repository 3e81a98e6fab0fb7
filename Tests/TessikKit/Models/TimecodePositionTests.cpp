#include "TessikKit/Models/TimecodePosition.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessik {
namespace {

using enum MTCFrameRate;

TEST(MTCFrameRate, IsTheCodeOfTheWire) {
    for (std::int64_t raw = 0; raw <= 3; ++raw)
        EXPECT_EQ(int(*mtcFrameRateFromRawValue(raw)), raw);
    for (const std::int64_t raw : {std::int64_t(-1), std::int64_t(4), std::int64_t(256), std::int64_t(1) << 32})
        EXPECT_FALSE(mtcFrameRateFromRawValue(raw)) << raw;
}

TEST(TimecodePosition, Moves) {
    struct Case {
        TimecodePosition from;
        std::int64_t by;
        TimecodePosition to;
    };
    const Case cases[] = {
        {{fps30, 23, 59, 59, 29}, 1, {fps30, 24, 0, 0, 0}},      // hours do not wrap
        {{fps30, 0, 0, 0, 5}, -10, {fps30, 0, 0, 0, 0}},         // never below zero
        {{fps30Drop, 0, 0, 59, 29}, 1, {fps30Drop, 0, 1, 0, 0}}, // no label is skipped
        {{fps25, 0, 0, 0, 40}, 0, {fps25, 0, 0, 1, 15}},         // a hostile label becomes a real one
        {{fps24, 0, 127, 127, 127}, 2, {fps24, 2, 9, 12, 9}},    // also the worst that seven bits hold
        {{fps25, 1, 0, 0, 0}, -1, {fps25, 0, 59, 59, 24}},
    };
    for (const Case& c : cases) {
        TimecodePosition position = c.from;
        position.addFrames(c.by);
        EXPECT_EQ(position, c.to) << qPrintable(c.from.displayString()) << " by " << c.by;
    }
}

TEST(TimecodePosition, CountAndLabelAreInverses) {
    for (const MTCFrameRate rate : {fps24, fps25, fps30Drop, fps30}) {
        EXPECT_EQ((TimecodePosition{rate, 1, 0, 0, 0}.totalFrames()), 3600 * framesPerSecond(rate));
        for (std::int64_t count = 0; count < 30 * 3600 * 30; count += 997)
            ASSERT_EQ(TimecodePosition::fromTotalFrames(rate, count).totalFrames(), count);
    }
    EXPECT_EQ(TimecodePosition::fromTotalFrames(fps25, -1), (TimecodePosition{fps25, 0, 0, 0, 0}));
}

TEST(TimecodePosition, IsShownAsItIs) {
    EXPECT_EQ((TimecodePosition{fps30Drop, 1, 2, 3, 4}.displayString()), QStringLiteral("01:02:03:04"));
    EXPECT_EQ((TimecodePosition{fps30, 100, 127, 99, 40}.displayString()), QStringLiteral("100:127:99:40"));
}

TEST(TimecodePositionDeathTest, OverflowStopsTheProgram) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH((void)(TimecodePosition{fps30, most / 60, 0, 0, 0}.totalFrames()), "timecode overflow");
    EXPECT_DEATH((TimecodePosition{fps30, 0, 0, 0, 1}.addFrames(most)), "timecode overflow");
}

} // namespace
} // namespace tessik
