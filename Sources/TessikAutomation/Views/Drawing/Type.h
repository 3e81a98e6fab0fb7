#pragma once

#include <QFont>
#include <QPainter>

namespace tessik {

/// The program's typeface: Inter if built in, else the system's sans.
namespace Type {

/// Registers the built-in fonts. Call once, before the first window.
void installFonts();

/// `pixels` in the painter's unit, and never less than 8; `spacing` between letters likewise.
QFont font(qreal pixels, QFont::Weight weight, qreal spacing = 0);

/// A hyphen-minus before a number becomes a minus sign; for drawing only.
QString typeset(QString text);

/// Draws one line, centred vertically on the height of its capitals and placed horizontally by `alignment`.
void draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QString& text, const QFont& font,
          const QColor& color);

} // namespace Type
} // namespace tessik
