#include "TessikAutomation/Views/Controls/MiniFader.h"
#include "TessikAutomation/Views/Controls/RotaryKnob.h"
#include "TessikAutomation/Views/Desk/InputModule.h"
#include "TessikAutomation/Views/Desk/ManualControls.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

const Travel gain = Travels::gain();
const Travel sweep = Travels::sweep(500, 10'000);
const Travel osc = Travels::selector({QStringLiteral("OFF"), QStringLiteral("40"), QStringLiteral("100")});

TEST(TravelTests, PositionsAndValues) {
    const struct {
        const Travel& travel;
        double value, position;
    } rows[]{{gain, -15, 0}, {gain, 0, 0.5},  {gain, 15, 1},      {gain, 40, 1},
             {gain, -40, 0}, {sweep, 500, 0}, {sweep, 10'000, 1}, {sweep, std::sqrt(500.0 * 10'000), 0.5},
             {sweep, 3, 0},  {sweep, -1, 0}};
    for (const auto& row : rows) {
        EXPECT_NEAR(row.travel.position(row.value), row.position, 1e-12) << row.value;
        EXPECT_NEAR(row.travel.valueAt(row.position), std::clamp(row.value, row.travel.min, row.travel.max), 1e-9);
    }
    EXPECT_EQ(gain.valueAt(7), 15);
    EXPECT_EQ(gain.valueAt(-7), -15);
}

TEST(TravelTests, AKnobUnderAHandSettlesOnItsDetentAndAShortFaderFollowsThePointer) {
    const auto dragged = [](const Travel& travel, double from, double up) {
        return RotaryKnob({}, travel, Qt::red)
            .dragged(QRect(0, 0, 42, 44), {QPointF(20, 20), QPointF(420, 20 - up), from});
    };
    Travel free = gain;
    free.hasCenterDetent = false;
    EXPECT_EQ(dragged(gain, 6, -27), 0) << "0.6 dB off the centre: within 2.5 % of the range";
    EXPECT_NEAR(dragged(gain, 6, -26), 0.8, 1e-9);
    EXPECT_NEAR(dragged(free, 6, -27), 0.6, 1e-9);
    EXPECT_NEAR(dragged(sweep, 500, 75), 2236.07, 0.01);
    EXPECT_EQ(dragged(osc, 0, 70), 1);
    const MiniFader fader({}, Travels::level(), {}, Qt::white);
    const QPointF middle(20, 100 + 2 + (64 - 11 - 4) / 2.0);
    EXPECT_NEAR(fader.dragged(QRect(0, 100, 42, 64), {QPointF(0, 0), middle, 3}), 5, 1e-9);
}

TEST(TravelTests, ASelectorMovesByWholePositionsAndNoTravelTakesTheWindowsKeys) {
    EXPECT_EQ(osc.wheeled(10, 0), 1);
    EXPECT_EQ(osc.wheeled(-10, 0), 0);
    EXPECT_EQ(osc.keyed(Qt::Key_Up, true, 0), 1);
    EXPECT_EQ(osc.keyed(Qt::Key_PageDown, false, 2), 1);
    EXPECT_NEAR(*gain.keyed(Qt::Key_PageUp, false, 0), 2.5, 1e-9);
    for (const int key : {Qt::Key_Left, Qt::Key_Space, Qt::Key_Return})
        EXPECT_FALSE(gain.keyed(key, false, 0)) << key;
}

TEST(TravelTests, ValuesAreWrittenAndRead) {
    const Travel pan = Travels::pan();
    const Travel level = Travels::level();
    const struct {
        const Travel& travel;
        double value;
        const char* text;
    } written[]{{gain, 3, "+3.0 dB"},       {gain, -12.26, "-12.3 dB"},
                {gain, -0.01, "0.0 dB"},    {sweep, 220, "220 Hz"},
                {sweep, 999.6, "1.00 kHz"}, {sweep, 2200, "2.20 kHz"},
                {sweep, 9996, "10.0 kHz"},  {level, 7.5, "7.5"},
                {pan, 0.001, "C"},          {pan, -0.35, "L 35"},
                {pan, 1, "R 100"},          {osc, 2, "100"},
                {osc, 17, "100"},           {osc, -3, "OFF"}};
    for (const auto& row : written)
        EXPECT_EQ(row.travel.text(row.value), QLatin1String(row.text));
    const struct {
        const Travel& travel;
        const char* text;
        std::optional<double> value;
    } typed[]{{gain, "+3 dB", 3},     {gain, "-4,5", -4.5}, {gain, "−2db", -2},     {gain, "99", 15},
              {gain, "dB", {}},       {gain, "3 Hz", {}},   {gain, "", {}},         {sweep, "2.2k", 2200},
              {sweep, "3 kHz", 3000}, {sweep, "700", 700},  {sweep, "700 hz", 700}, {pan, "L35", -0.35},
              {pan, "r 100", 1},      {pan, "c", 0},        {pan, "-20", -0.2},     {pan, "left", {}},
              {level, ".5", 0.5},     {level, "1e3", {}},   {level, "nan", {}},     {osc, "off", 0},
              {osc, "100", 2},        {osc, "70", {}}};
    for (const auto& row : typed)
        EXPECT_EQ(row.travel.typed(QString::fromUtf8(row.text)), row.value) << row.text;
}

/// Every field has one control; what a new record holds can be reached by hand, is shown, and can be typed.
template <typename Record>
void expectComplete(const RecordControls<Record>& controls, std::size_t others) {
    QSet<QString> ids;
    for (const RecordControl<Record>& control : controls.list) {
        EXPECT_FALSE(control.id.isEmpty());
        EXPECT_FALSE(control.fullName.isEmpty());
        ids.insert(control.id);
        if (control.isSwitch()) continue;
        const Travel& travel = control.travel;
        EXPECT_GE(travel.defaultValue, travel.min) << qPrintable(control.id);
        EXPECT_LE(travel.defaultValue, travel.max) << qPrintable(control.id);
        EXPECT_EQ(travel.defaultValue, Record().*std::get<1>(control.field));
        for (const double position : {0.0, 0.3, 0.5, 1.0}) {
            const double value = travel.valueUnderHand(position);
            const auto typed = travel.typed(travel.text(value));
            ASSERT_TRUE(typed) << qPrintable(travel.text(value));
            EXPECT_NEAR(travel.position(*typed), travel.position(value), 0.006) << qPrintable(control.id);
        }
    }
    EXPECT_EQ(std::size_t(ids.size()), controls.list.size());
    EXPECT_EQ(controls.list.size() + others, std::tuple_size_v<std::remove_cvref_t<decltype(recordFields<Record>)>>);
}

TEST(ManualControlsTests, EveryFieldHasOneControl) {
    expectComplete(ManualControls::channel(), 0);
    expectComplete(ManualControls::masterSection(), 1); // the returns are a record each
    expectComplete(ManualControls::effectsReturn(), 0);
}

TEST(ManualControlsTests, TheModuleHasThemInTheOrderOfTheConsole) {
    QStringList expected;
    for (const auto& control : ManualControls::channel().list)
        if (control.id != QLatin1String("bypass")) expected << control.id;
    expected.insert(expected.indexOf(QStringLiteral("eq100Gain")) + 1, QStringLiteral("eqOn"));
    QStringList ids;
    for (const PanelKind::Control& control : inputModuleTable().kind.controls)
        ids << control.id;
    EXPECT_EQ(ids, expected);
}

} // namespace
} // namespace tessik
