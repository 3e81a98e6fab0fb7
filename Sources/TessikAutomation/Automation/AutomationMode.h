#pragma once

#include <QString>

#include <array>
#include <cstdint>

namespace tessik {

/// What the pass engine does while timecode runs. NULL is not a mode but a switch alongside update and read.
enum class AutomationMode : std::uint8_t { off, write, update, read };
inline constexpr std::array allAutomationModes{AutomationMode::off, AutomationMode::write, AutomationMode::update,
                                               AutomationMode::read};

/// "off", "write", "update", "read".
QString rawValue(AutomationMode mode);

/// Whether a roll in this mode makes a take.
constexpr bool records(AutomationMode mode) { return mode == AutomationMode::write || mode == AutomationMode::update; }
/// Whether this mode acts on the selected pass.
constexpr bool needsPass(AutomationMode mode) { return mode == AutomationMode::update || mode == AutomationMode::read; }

} // namespace tessik
