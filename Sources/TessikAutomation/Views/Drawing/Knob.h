#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

#include <QPainter>

/// A rotary knob. Angles are degrees clockwise from straight up; measures are device pixels, `u` of them per logical
/// pixel.
namespace tessik::Parts {

/// The parts of a knob that do not turn: its shadow on the panel, skirt, seat and coloured cap.
void knobBody(QPainter& painter, QPointF centre, qreal radius, qreal u, const QColor& tint, const Look& look);
/// The line on the cap, dark on a pale one.
void knobPointer(QPainter& painter, QPointF centre, qreal radius, qreal u, double angle, bool dark);
/// Marks around the knob from one end of its travel to the other; with `polarized` the middle one stands out.
void knobTicks(QPainter& painter, QPointF centre, qreal radius, qreal u, double minAngle, double maxAngle, int count,
               bool polarized, const Look& look);

/// Whether a cap of that colour needs a dark line.
bool isPale(const QColor& tint);

/// Room that the marks take around the knob, in logical pixels.
inline constexpr int tickRoom = 6;

} // namespace tessik::Parts
