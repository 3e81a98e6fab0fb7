#pragma once

#include <QColor>
#include <QPainter>

#include <functional>

namespace tessik {

/// Draws a symbol in `color`, centred in the rectangle, in device pixels.
using Symbol = std::function<void(QPainter&, const QRectF&, const QColor& color)>;

/// The symbol whose shape is an SVG among the resources; the caller gives its colour.
Symbol svgSymbol(const QString& resource);
/// The built-in symbol of that name: "trash", "star".
Symbol symbolNamed(const QString& name);

} // namespace tessik
