#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Views/Theme/ThemeStore.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(ThemeStoreTest, StartsFromTheSavedThemeAndFallsBackToDark) {
    const Palette* const dark = &Palette::dark();
    const Palette* const light = &Palette::light();
    const std::tuple<const char*, AppTheme, const Palette*, const Palette*> rows[]{
        {nullptr, AppTheme::dark, dark, dark},    {"dark", AppTheme::dark, dark, dark},
        {"light", AppTheme::light, light, light}, {"system", AppTheme::system, dark, light},
        {"Light", AppTheme::dark, dark, dark},
    };
    for (const auto& [saved, theme, inDarkSystem, inLightSystem] : rows) {
        SavedSettings::remove(SavedSettings::Key::appTheme);
        if (saved) SavedSettings::setString(SavedSettings::Key::appTheme, QLatin1String(saved));
        const ThemeStore store;
        SCOPED_TRACE(saved ? saved : "nothing saved");
        EXPECT_EQ(store.theme.value(), theme);
        EXPECT_EQ(&store.palette(ColorScheme::dark), inDarkSystem);
        EXPECT_EQ(&store.palette(ColorScheme::light), inLightSystem);
    }
}

TEST(ThemeStoreTest, StoresOnEveryAssignmentAndNotifiesOnChangeOnly) {
    SavedSettings::remove(SavedSettings::Key::appTheme);
    ThemeStore store;
    int changes = 0;
    const auto observer = store.theme.addNotifier([&] { ++changes; });
    for (int i = 0; i < 2; ++i) {
        store.setTheme(AppTheme::light);
        EXPECT_EQ(SavedSettings::appTheme(), AppTheme::light);
        SavedSettings::remove(SavedSettings::Key::appTheme);
    }
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
