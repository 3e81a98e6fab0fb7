#include "TessikAutomation/Views/Controls/FaderTrackView.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(FaderTrackViewTest, ScaleHasTheMarksOfTheFaderLawAndTheEnd) {
    const auto& scale = FaderTrackView::scale();
    const std::pair<const char*, double> marks[]{
        {"-60", 1 / 127.0},  {"-50", 5 / 127.0},  {"-40", 9 / 127.0},  {"-30", 25 / 127.0}, {"-25", 40 / 127.0},
        {"-20", 49 / 127.0}, {"-15", 61 / 127.0}, {"-10", 77 / 127.0}, {"-5", 91 / 127.0},  {"+0", 106 / 127.0},
        {"+5", 118 / 127.0}, {"+10", 1.0},        {"-∞", 0.0}};
    ASSERT_EQ(scale.size(), std::size(marks));
    for (std::size_t i = 0; i < scale.size(); ++i) {
        EXPECT_EQ(scale[i].label, QString::fromUtf8(marks[i].first));
        EXPECT_DOUBLE_EQ(scale[i].fraction, marks[i].second);
    }
}

TEST(FaderTrackViewTest, LabelsTakeTheirSignBeforeTheyAreCut) {
    const std::pair<double, const char*> labels[]{{0.4, "+0"}, {-0.4, "0"}, {-5.5, "-5"}, {0, "+0"}, {9.9, "+9"}};
    for (const auto& [decibels, label] : labels)
        EXPECT_EQ(FaderTrackView::scaleLabel(decibels), QLatin1String(label)) << decibels;
}

TEST(FaderTrackViewTest, CapStandsWhereTheValueIsAndNeverLeavesTheView) {
    const FaderTrackView fader;
    const QRect rect(10, 100, 88, 454); // 400 of travel
    const struct {
        double value, centreY;
    } rows[]{{0, 527}, {127, 127}, {63.5, 327}, {106, 100 + 454 - 27 - 400 * 106 / 127.0}};
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(fader.centreY(rect, row.value / 127), row.centreY) << row.value;
        EXPECT_NEAR(fader.valueAt(rect, row.centreY), row.value, 1e-9) << row.value;
        EXPECT_TRUE(rect.contains(fader.capRect(rect, row.value))) << row.value;
        EXPECT_TRUE(fader.movingRect(rect, {row.value, {}}).contains(fader.capRect(rect, row.value)));
    }
    EXPECT_EQ(fader.valueAt(rect, -1000), 127);
    EXPECT_EQ(fader.valueAt(rect, 5000), 0);
    EXPECT_EQ(fader.valueAt(QRect(0, 0, 88, 54), 10), 0); // no travel at all
}

TEST(FaderTrackViewTest, ANarrowStripHasItsCapInTheMiddleAndWholeTicks) {
    const FaderTrackView fader;
    DrawingContext drawing;
    for (const int width : {36, 64}) {
        const QRect strip(0, 0, width, 400);
        const QRect cap = fader.capRect(strip, 64);
        EXPECT_EQ(cap.left(), width - 1 - cap.right()) << width;
        QImage picture(strip.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        Canvas canvas(painter, 1, Look::of(ColorScheme::dark), drawing);
        fader.paintStatic(canvas, strip);
        painter.end();
        const int y = qRound(fader.centreY(strip, 91 / 127.0)); // -5 dB
        const auto isTick = [&](int x) { return picture.pixel(x, y) == Palette::dark().tickColor.rgb(); };
        int left = 0, right = 0;
        for (int x = 0; x < width; ++x)
            (x < width / 2 ? left : right) += isTick(x);
        EXPECT_GE(left, 6) << width;
        EXPECT_EQ(left, right) << width;
        EXPECT_FALSE(isTick(0) || isTick(width - 1)) << width;
    }
}

TEST(FaderTrackViewTest, DragWritesTheUnroundedPlaceOfThePointer) {
    const FaderTrackView fader;
    const QRect rect(0, 0, 88, 308); // 254 of travel: half a step a pixel
    EXPECT_DOUBLE_EQ(fader.dragged(rect, {.from = {3, 200}, .to = {3, 28}, .startNumber = 5}), 126.5);
    // Neither x nor where and at what the drag began matter.
    EXPECT_DOUBLE_EQ(fader.dragged(rect, {.from = {80, 30}, .to = {80, 28}, .startNumber = 99}), 126.5);
}

TEST(FaderTrackViewTest, Keys) {
    const FaderTrackView fader;
    const struct {
        int key;
        double from;
        std::optional<double> to;
    } rows[]{{Qt::Key_Up, 5, 6},    {Qt::Key_Down, 5, 4},   {Qt::Key_PageUp, 5, 13}, {Qt::Key_PageDown, 20, 12},
             {Qt::Key_Home, 64, 0}, {Qt::Key_End, 64, 127}, {Qt::Key_Up, 127, 127},  {Qt::Key_PageDown, 3, 0},
             {Qt::Key_Left, 5, {}}, {Qt::Key_Right, 5, {}}, {Qt::Key_Space, 5, {}},  {Qt::Key_Return, 5, {}}};
    for (const auto& row : rows)
        EXPECT_EQ(fader.keyed(row.key, false, row.from), row.to) << row.key << " from " << row.from;
}

} // namespace
} // namespace tessik
