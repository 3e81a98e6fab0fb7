#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>

#include <functional>

namespace tessik {

/// Draws a symbol in `color`, centred in the rectangle, in device pixels.
using Symbol = std::function<void(QPainter&, const QRectF&, const QColor& color)>;

/// The built-in symbol of that name: "trash", "star".
Symbol symbolNamed(const QString& name);
/// The same as an icon of 16 pixels, sharp on screens of up to three times that.
QIcon symbolIcon(const QString& name, const QColor& color);
/// The sign of a message box, in its own colours: "alert".
QIcon signNamed(const QString& name);

} // namespace tessik
