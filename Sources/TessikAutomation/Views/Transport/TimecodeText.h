#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikKit/Models/TimecodePosition.h"

#include <optional>

namespace tessik {

/// A timecode position as the transport writes it.
namespace TimecodeText {

/// "01:02:03:04", or dashes if there is none.
QString of(const std::optional<TimecodePosition>& position);

/// What a typed text means at a rate: either the position or, as a sentence, what is wrong with the text.
struct Typed {
    std::optional<TimecodePosition> position;
    QString problem;
};
/// Accepts "1:02:03:04" with any separators between the numbers, "1:02:03" for frame 0, and digits alone, filled from
/// the right: "1020304".
Typed parse(const QString& text, MTCFrameRate rate);

/// Draws it in the middle of a rectangle of device pixels, every digit in a cell of the same width, so that running
/// digits stay put. Text too long for the rectangle is drawn smaller.
void draw(Canvas& canvas, const QRect& rect, const QString& text, qreal pixels, const QColor& color);

} // namespace TimecodeText
} // namespace tessik
