#include "TessikAutomation/Views/Drawing/Knob.h"

#include "TessikAutomation/Views/Theme/Materials.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>

namespace tessik::Parts {
namespace {

constexpr double capShare = 0.735; // of the radius
constexpr int flutes = 22;

QPointF direction(double angle) {
    const double radians = angle * M_PI / 180;
    return {std::sin(radians), -std::cos(radians)};
}

void disc(QPainter& painter, QPointF centre, qreal radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawEllipse(centre, radius, radius);
}

/// A gradient across a disc, from the lit to the dark side.
QLinearGradient lit(QPointF centre, qreal radius, const QColor& light, const QColor& dark) {
    QLinearGradient gradient(centre - QPointF(0.55, 0.83) * radius, centre + QPointF(0.55, 0.83) * radius);
    gradient.setColorAt(0, light);
    gradient.setColorAt(1, dark);
    return gradient;
}

QPainterPath skirt(QPointF centre, qreal radius) {
    QPainterPath path;
    constexpr int points = flutes * 8;
    for (int i = 0; i < points; ++i) {
        const double wave = std::cos(2 * M_PI * flutes * i / points);
        const QPointF point = centre + direction(360.0 * i / points) * radius * (0.975 + 0.025 * wave);
        i == 0 ? path.moveTo(point) : path.lineTo(point);
    }
    path.closeSubpath();
    return path;
}

} // namespace

bool isPale(const QColor& tint) { return tint.lightnessF() > 0.62f && tint.hslSaturationF() < 0.3f; }

void knobBody(QPainter& painter, QPointF centre, qreal radius, qreal u, const QColor& tint, const Look& look) {
    // Two shadows: a wide one away from the light, and a dark one where the skirt meets the panel.
    const QPointF away = centre + QPointF(1.6, 3.4) * u;
    QRadialGradient shadow(away, radius * 1.42);
    shadow.setColorAt(0.55, withAlpha(Qt::black, look.isDark() ? 0.62 : 0.42));
    shadow.setColorAt(0.8, withAlpha(Qt::black, look.isDark() ? 0.22 : 0.14));
    shadow.setColorAt(1, withAlpha(Qt::black, 0));
    disc(painter, away, radius * 1.42, shadow);
    disc(painter, centre, radius + 0.8 * u, withAlpha(Qt::black, look.isDark() ? 0.85 : 0.6));

    const QPainterPath outline = skirt(centre, radius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(lit(centre, radius, Materials::skirtLight, Materials::skirtDark));
    painter.drawPath(outline);
    // The light catches the upper rim of the skirt.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QBrush(lit(centre, radius, withAlpha(Qt::white, 0.42), withAlpha(Qt::white, 0))), 0.9 * u));
    painter.drawEllipse(centre, radius - 0.8 * u, radius - 0.8 * u);

    const qreal cap = radius * capShare;
    disc(painter, centre, cap + 1.1 * u, Materials::knobSeat);
    disc(painter, centre, cap, lit(centre, cap, blend(tint, Qt::white, 0.26), blend(tint, Qt::black, 0.46)));
    QRadialGradient sheen(centre - QPointF(0.36, 0.5) * cap, cap * 1.05);
    sheen.setColorAt(0, withAlpha(Qt::white, 0.4));
    sheen.setColorAt(0.45, withAlpha(Qt::white, 0.1));
    sheen.setColorAt(1, withAlpha(Qt::white, 0));
    disc(painter, centre, cap, sheen);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QBrush(lit(centre, cap, withAlpha(Qt::white, 0.55), withAlpha(Qt::black, 0.35))), 0.8 * u));
    painter.drawEllipse(centre, cap - 0.5 * u, cap - 0.5 * u);
}

void knobPointer(QPainter& painter, QPointF centre, qreal radius, qreal u, double angle, bool dark) {
    const QPointF along = direction(angle);
    const QLineF line(centre + along * radius * 0.26, centre + along * radius * 0.88);
    const auto stroke = [&](const QColor& color, qreal width) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(line);
    };
    stroke(dark ? withAlpha(Qt::white, 0.35) : withAlpha(Qt::black, 0.55), 3.2 * u);
    stroke(dark ? Materials::pointerDark : Materials::pointerLight, 1.8 * u);
}

void knobTicks(QPainter& painter, QPointF centre, qreal radius, qreal u, double minAngle, double maxAngle, int count,
               bool polarized, const Look& look) {
    for (int i = 0; i < count; ++i) {
        const bool middle = polarized && 2 * i == count - 1;
        const bool end = i == 0 || i == count - 1;
        const QPointF along = direction(minAngle + (maxAngle - minAngle) * i / (count - 1));
        const qreal from = radius + 3.4 * u;
        const QColor color = middle ? look.tints.scaleZero : look.tints.knobTick;
        painter.setPen(QPen(color, (middle ? 1.4 : 1.0) * u, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QLineF(centre + along * from, centre + along * (from + (end || middle ? 2.6 : 1.9) * u)));
    }
}

} // namespace tessik::Parts
