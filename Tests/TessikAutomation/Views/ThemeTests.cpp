#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Views/Theme/ThemeStore.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(ThemeStoreTest, StartsFromTheSavedThemeAndFallsBackToDark) {
    const struct {
        const char* saved;
        AppTheme theme;
        const Palette* inDarkSystem;
        const Palette* inLightSystem;
    } rows[]{
        {nullptr, AppTheme::dark, &Palette::dark(), &Palette::dark()},
        {"dark", AppTheme::dark, &Palette::dark(), &Palette::dark()},
        {"light", AppTheme::light, &Palette::light(), &Palette::light()},
        {"system", AppTheme::system, &Palette::dark(), &Palette::light()},
        {"Light", AppTheme::dark, &Palette::dark(), &Palette::dark()},
        {"", AppTheme::dark, &Palette::dark(), &Palette::dark()},
    };
    for (const auto& row : rows) {
        SavedSettings::remove(SavedSettings::Key::appTheme);
        if (row.saved) SavedSettings::setString(SavedSettings::Key::appTheme, QLatin1String(row.saved));
        const ThemeStore store;
        const char* name = row.saved ? row.saved : "nothing saved";
        EXPECT_EQ(store.theme.value(), row.theme) << name;
        EXPECT_EQ(&store.palette(ColorScheme::dark), row.inDarkSystem) << name;
        EXPECT_EQ(&store.palette(ColorScheme::light), row.inLightSystem) << name;
        EXPECT_EQ(store.preferredColorScheme().has_value(), row.theme != AppTheme::system) << name;
    }
}

TEST(ThemeStoreTest, StoresOnEveryAssignmentAndNotifiesOnChangeOnly) {
    ThemeStore store;
    store.setTheme(AppTheme::dark);
    int changes = 0;
    const auto observer = store.theme.addNotifier([&] { ++changes; });
    store.setTheme(AppTheme::light);
    EXPECT_EQ(SavedSettings::appTheme(), AppTheme::light);
    SavedSettings::remove(SavedSettings::Key::appTheme);
    store.setTheme(AppTheme::light); // equal, and stored all the same
    EXPECT_EQ(SavedSettings::appTheme(), AppTheme::light);
    EXPECT_EQ(changes, 1);
}

TEST(LookTest, LegendsKeepAContrastOf4_5AndTicksOf1_6) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(double(color.redF())) + 0.7152 * linear(double(color.greenF())) +
               0.0722 * linear(double(color.blueF()));
    };
    const auto contrast = [&](const QColor& a, const QColor& b) {
        const double x = luminance(a), y = luminance(b);
        return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
    };
    for (const ColorScheme scheme : {ColorScheme::dark, ColorScheme::light}) {
        const Look& look = Look::of(scheme);
        const QColor bank = over(look.palette.faderBankBackground, look.palette.appBackground);
        const QColor strip = over(look.palette.channelStripBackground, look.palette.appBackground);
        const QColor master = over(look.palette.masterPanelBackground, look.palette.appBackground);
        for (const QColor& panel : {strip, master}) {
            EXPECT_GE(contrast(look.tints.moduleLegend, panel), 4.5);
            EXPECT_GE(contrast(look.tints.knobTick, panel), 1.6);
            EXPECT_GE(contrast(look.tints.scaleZero, panel), 1.6);
        }
        EXPECT_GE(contrast(over(look.tints.fineTick, bank), bank), 1.6);
        EXPECT_GE(contrast(look.palette.tickColor, bank), 1.6);
        EXPECT_GE(contrast(look.tints.displayDim, look.tints.displayBackground), 4.5);
        EXPECT_GE(contrast(look.tints.legend, look.palette.switchOffFill), 4.5);
        EXPECT_GE(contrast(over(withAlpha(look.tints.legend, 0.85), bank), bank), 4.5);
        EXPECT_GE(contrast(look.tints.secondaryText, look.tints.headerTop), 4.5);
        EXPECT_GE(contrast(look.tints.secondaryText, look.railColor()), 4.5);
        EXPECT_GE(contrast(look.tints.aluminiumPrint, look.tints.aluminium), 4.5);
    }
}

} // namespace
} // namespace tessik
