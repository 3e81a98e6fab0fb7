#include "TessikAutomation/Views/Theme/ThemeStore.h"

#include "TessikAutomation/Persistence/SavedSettings.h"

namespace tessik {

ThemeStore::ThemeStore() : theme(SavedSettings::appTheme().value_or(AppTheme::dark)) {}

void ThemeStore::setTheme(AppTheme chosen) {
    SavedSettings::setString(SavedSettings::Key::appTheme, rawValue(chosen));
    theme = chosen;
}

ColorScheme ThemeStore::effectiveScheme(ColorScheme systemScheme) const {
    return preferredColorScheme().value_or(systemScheme);
}

std::optional<ColorScheme> ThemeStore::preferredColorScheme() const {
    switch (theme.value()) {
    case AppTheme::dark: return ColorScheme::dark;
    case AppTheme::light: return ColorScheme::light;
    case AppTheme::system: break;
    }
    return std::nullopt;
}

} // namespace tessik
