#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

#include <QPainter>

/// A rotary knob. Angles are degrees clockwise from straight up; measures are device pixels, `u` of them to a logical
/// pixel.
namespace tessik::Parts {

/// Everything of a knob that does not turn: its shadow on the panel, skirt, seat and the coloured cap.
void knobBody(QPainter& painter, QPointF centre, qreal radius, qreal u, const QColor& tint, const Look& look);
/// The line on the cap, dark on a pale one.
void knobPointer(QPainter& painter, QPointF centre, qreal radius, qreal u, double angle, bool dark);
/// Marks around the knob from one end of its way to the other; with `polarized` the one in the middle stands out.
void knobTicks(QPainter& painter, QPointF centre, qreal radius, qreal u, double minAngle, double maxAngle, int count,
               bool polarized, const Look& look);

/// Whether a cap of that colour needs a dark line.
bool isPale(const QColor& tint);

/// Room that the marks take around the knob, in logical pixels.
inline constexpr int tickRoom = 6;

} // namespace tessik::Parts
