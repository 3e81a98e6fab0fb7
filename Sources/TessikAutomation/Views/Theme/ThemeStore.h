#pragma once

#include "TessikAutomation/Persistence/AppTheme.h"
#include "TessikAutomation/Views/Theme/Look.h"
#include "TessikKit/Models/Published.h"

namespace tessik {

/// The user's choice of appearance, kept on this machine, and the colours that follow from it.
class ThemeStore {
public:
    /// Starts with the saved theme; dark where none is saved.
    ThemeStore();

    Published<AppTheme, ThemeStore> theme;
    /// Stores the choice, even if unchanged.
    void setTheme(AppTheme chosen);

    /// The scheme to draw with, given what the system currently reports.
    ColorScheme effectiveScheme(ColorScheme systemScheme) const;
    const Palette& palette(ColorScheme forColorScheme) const { return Palette::of(effectiveScheme(forColorScheme)); }
    /// The scheme that the windows ask for; none means following the system.
    std::optional<ColorScheme> preferredColorScheme() const;
};

} // namespace tessik
