#pragma once

#include <QString>

#include <array>
#include <optional>

namespace tessik {

/// The user's choice of appearance.
enum class AppTheme : std::uint8_t { system, dark, light };
inline constexpr std::array allAppThemes{AppTheme::system, AppTheme::dark, AppTheme::light};

/// "system", "dark" or "light", as the choice is saved.
QString rawValue(AppTheme theme);
/// None for any other text, including different case.
std::optional<AppTheme> appThemeFromRawValue(const QString& rawValue);

} // namespace tessik
