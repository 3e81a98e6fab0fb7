#include "TessikAutomation/Views/Controls/FaderTrackView.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(FaderTrackViewTest, CapStandsWhereTheValueIsAndNeverLeavesTheView) {
    const FaderTrackView fader;
    const QRect rect(10, 100, 88, 454); // 400 of travel
    const struct {
        double value, centreY;
    } rows[]{{0, 527}, {127, 127}, {63.5, 327}, {106, 100 + 454 - 27 - 400 * 106 / 127.0}};
    for (const auto& row : rows) {
        EXPECT_NEAR(fader.valueAt(rect, row.centreY), row.value, 1e-9) << row.value;
        EXPECT_TRUE(rect.contains(fader.capRect(rect, row.value))) << row.value;
        EXPECT_TRUE(fader.movingRect(rect, {row.value, {}}).contains(fader.capRect(rect, row.value)));
    }
    EXPECT_EQ(fader.valueAt(rect, -1000), 127);
    EXPECT_EQ(fader.valueAt(rect, 5000), 0);
    EXPECT_EQ(fader.valueAt(QRect(0, 0, 88, 54), 10), 0); // no travel at all
    const QRect narrow = fader.capRect(QRect(0, 0, 36, 400), 64);
    EXPECT_EQ(narrow.left(), 36 - 1 - narrow.right()) << "in the middle of a narrow strip";
    for (const FaderTrackView::Mark& mark : FaderTrackView::scale())
        EXPECT_EQ(mark.label == QLatin1String("+0"), mark.fraction == 106 / 127.0) << qPrintable(mark.label);
}

TEST(FaderTrackViewTest, KeysStepPageAndLeaveTheWindowsAlone) {
    const FaderTrackView fader;
    const struct {
        int key;
        double from;
        std::optional<double> to;
    } rows[]{{Qt::Key_Up, 5, 6},     {Qt::Key_PageUp, 5, 13}, {Qt::Key_PageDown, 3, 0}, {Qt::Key_Home, 64, 0},
             {Qt::Key_End, 64, 127}, {Qt::Key_Up, 127, 127},  {Qt::Key_Left, 5, {}},    {Qt::Key_Return, 5, {}}};
    for (const auto& row : rows)
        EXPECT_EQ(fader.keyed(row.key, false, row.from), row.to) << row.key << " from " << row.from;
}

} // namespace
} // namespace tessik
