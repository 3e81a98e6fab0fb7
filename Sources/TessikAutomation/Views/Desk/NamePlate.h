#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"

namespace tessik {

/// Draws the maker's plate of the desk, of brushed metal, in the middle of `rect`.
void paintNamePlate(Canvas& canvas, const QRect& rect);
/// The least height that it takes, in units of the panel.
inline constexpr int namePlateMinHeight = 64;

} // namespace tessik
