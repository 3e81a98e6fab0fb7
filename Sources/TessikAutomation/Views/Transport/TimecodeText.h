#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikKit/Models/TimecodePosition.h"

#include <optional>

namespace tessik {

/// A timecode position as the transport writes it.
namespace TimecodeText {

/// "01:02:03:04", or dashes where there is none.
QString of(const std::optional<TimecodePosition>& position);

/// Draws it in the middle of a rectangle of device pixels, every digit in a cell of one width, so that running digits
/// stand still. A text that is too long for the rectangle is drawn smaller.
void draw(Canvas& canvas, const QRect& rect, const QString& text, qreal pixels, const QColor& color);

} // namespace TimecodeText
} // namespace tessik
