#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"

namespace tessik {

/// Draws the desk's brushed-metal maker's plate in the middle of `rect`.
void paintNamePlate(Canvas& canvas, const QRect& rect);
/// The minimum height it needs, in panel units.
inline constexpr int namePlateMinHeight = 64;

} // namespace tessik
