#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

#include <QPainter>

/// The material of the desk. A single light from the upper left for everything. All measures are device pixels; `u` is
/// the number of device pixels per logical one.
namespace tessik::Parts {

/// A key cap or button plate: dark outline, vertical gradient, a lit upper edge.
void raisedPlate(QPainter& painter, const QRect& rect, qreal u, const QColor& fill, const Tints& tints,
                 bool pressed = false);
/// A plate lit from within.
void litPlate(QPainter& painter, const QRect& rect, qreal u, const QColor& light, bool pressed = false);
/// A hollow in the panel, with a lit lower lip.
void recess(QPainter& painter, const QRect& rect, qreal u, const QColor& fill, qreal radius, const Look& look);
/// A lamp behind a slit.
void lamp(QPainter& painter, const QRect& rect, qreal u, const QColor& color, bool lit);
/// Light cast on the surroundings; `rect` is the source.
void glow(QPainter& painter, const QRectF& rect, qreal reach, const QColor& color, double strength);
/// A soft shadow under a part with rounded corners.
void dropShadow(QPainter& painter, const QRectF& rect, qreal radius, qreal blur, double strength);
/// A brushed bar between two hairlines.
void aluminium(QPainter& painter, const QRect& rect, qreal u, const Look& look);
/// Print on the metal of the bar.
void letterpress(QPainter& painter, const QRect& rect, qreal u, const QString& text, const QFont& font,
                 const Look& look);
/// The shadow that a raised bar throws on the panel below it; `rect` begins at its lower edge.
void barShadow(QPainter& painter, const QRect& rect);
/// A module's face: the panel colour with light falling across it, and the seams to its neighbours.
void modulePanel(QPainter& painter, const QRect& rect, qreal u, const QColor& fill, const Look& look);
/// A long-throw fader cap, its index line in `line`.
void faderCap(QPainter& painter, const QRect& cap, qreal u, const QColor& line);

/// Space around a cap for the shadows that `faderCap` draws, in logical pixels.
inline constexpr QMargins capShadow{9, 4, 11, 18};

} // namespace tessik::Parts
