#pragma once

#include <QColor>

/// The colours that distinguish the console's sections: knob caps, and titles to match. The same in both looks.
namespace tessik::SectionTints {

inline constexpr QColor input(0xC8, 0x40, 0x3C);
inline constexpr QColor eqHigh(0x3B, 0x7F, 0xC9);
inline constexpr QColor eqHighMid(0x3E, 0x9A, 0x5A);
inline constexpr QColor eqLowMid(0xD2, 0x96, 0x2E);
inline constexpr QColor eqLow(0x9C, 0x62, 0x3E);
inline constexpr QColor aux(0x8B, 0x54, 0xB4);
inline constexpr QColor monitor(0x2E, 0x96, 0x9C);
inline constexpr QColor output(0xCF, 0xCF, 0xCF);
inline constexpr QColor bypass(0x5C, 0xB0, 0x6C);
inline constexpr QColor effects(0xB8, 0x4C, 0x86);
inline constexpr QColor master(0x7C, 0x86, 0x94);

} // namespace tessik::SectionTints
