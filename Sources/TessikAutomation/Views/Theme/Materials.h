#pragma once

#include <QColor>

/// Colours of the desk's materials other than panels and print. The same in both looks.
namespace tessik::Materials {

// ---- caps and knobs
inline constexpr QColor black(8, 8, 8); ///< bands and bodies of caps
inline constexpr QColor skirtLight(0x62, 0x62, 0x64);
inline constexpr QColor skirtDark(0x1C, 0x1C, 0x1E);
inline constexpr QColor knobSeat(14, 14, 15);
inline constexpr QColor pointerLight(252, 252, 252);
inline constexpr QColor pointerDark(22, 22, 24);

// ---- short caps, from the upper edge down
inline constexpr QColor shortCapEdge(112, 112, 113);
inline constexpr QColor shortCapHollow(52, 52, 53);
inline constexpr QColor shortCapRidge(66, 66, 67);
inline constexpr QColor shortCapFoot(34, 34, 35);

// ---- screws and what is behind a plate
inline constexpr QColor screwLight(236, 236, 236);
inline constexpr QColor screwDark(108, 108, 108);
inline constexpr QColor screwSlot(40, 40, 40);
inline constexpr QColor plateBed(18, 18, 18);

// ---- scribble strips
inline constexpr QColor tape(0xF3, 0xEE, 0xE0);
inline constexpr QColor bareTape(0xC9, 0xC7, 0xC1);
inline constexpr QColor tapeInk(0x1B, 0x1A, 0x18);
inline constexpr QColor tapeEdge(0x5A, 0x56, 0x50);
inline constexpr QColor chosenNumber(0x1F, 0x66, 0xC4); ///< the plate under the number of a selected channel

} // namespace tessik::Materials
