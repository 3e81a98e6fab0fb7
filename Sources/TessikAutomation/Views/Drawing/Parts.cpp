#include "TessikAutomation/Views/Drawing/Parts.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QLinearGradient>
#include <QPainterPath>

#include <cmath>
#include <random>

namespace tessik::Parts {
namespace {

int hairline(qreal u) { return std::max(1, qRound(u)); }

/// A rounded rectangle that covers exactly these device pixels.
void fillRounded(QPainter& painter, const QRect& rect, qreal radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(QRectF(rect), radius, radius);
}

QRect inset(const QRect& rect, int by) { return rect.adjusted(by, by, -by, -by); }

/// The 1 px edge where light meets the top of a part, fading out to both corners.
void edgeLight(QPainter& painter, const QRect& rect, int thickness, const QColor& color) {
    QLinearGradient light(rect.topLeft(), rect.topRight());
    light.setColorAt(0, withAlpha(color, double(color.alphaF()) * 0.35));
    light.setColorAt(0.12, color);
    light.setColorAt(0.7, color);
    light.setColorAt(1, withAlpha(color, double(color.alphaF()) * 0.25));
    painter.fillRect(QRect(rect.x(), rect.y(), rect.width(), thickness), light);
}

} // namespace

void raisedPlate(QPainter& painter, const QRect& rect, qreal u, const QColor& fill, const Tints& tints, bool pressed) {
    const int line = hairline(u);
    const qreal radius = 3 * u;
    fillRounded(painter, rect, radius, tints.edgeShadow);
    const QRect body = inset(rect, line);
    QLinearGradient face(body.topLeft(), body.bottomLeft());
    face.setColorAt(pressed ? 1 : 0, blend(fill, Qt::white, 0.11));
    face.setColorAt(pressed ? 0 : 1, blend(fill, Qt::black, 0.02));
    fillRounded(painter, body, radius - line, face);
    if (pressed) return;
    edgeLight(painter, body.adjusted(line, 0, -line, 0), line, tints.edgeLight);
}

void litPlate(QPainter& painter, const QRect& rect, qreal u, const QColor& light, bool pressed) {
    const int line = hairline(u);
    const qreal radius = 3 * u;
    fillRounded(painter, rect, radius, blend(light, Qt::black, 0.92));
    const QRect body = inset(rect, line);
    QLinearGradient face(body.topLeft(), body.bottomLeft());
    face.setColorAt(0, blend(light, Qt::black, pressed ? 0.22 : 0.05));
    face.setColorAt(1, blend(light, Qt::black, 0.34));
    fillRounded(painter, body, radius - line, face);
    QRadialGradient heart(QRectF(body).center(), body.width() * 0.55);
    heart.setColorAt(0, withAlpha(Qt::white, 0.1));
    heart.setColorAt(1, withAlpha(Qt::white, 0));
    fillRounded(painter, body, radius - line, heart);
    edgeLight(painter, body.adjusted(line, 0, -line, 0), line, withAlpha(Qt::white, 0.42));
}

void recess(QPainter& painter, const QRect& rect, qreal u, const QColor& fill, qreal radius, const Look& look) {
    const int line = hairline(u);
    fillRounded(painter, rect.adjusted(0, line, 0, line), radius, withAlpha(Qt::white, look.isDark() ? 0.08 : 0.5));
    fillRounded(painter, rect, radius, blend(fill, Qt::black, 0.75));
    const QRect body = inset(rect, line);
    QLinearGradient depth(body.topLeft(), body.bottomLeft());
    depth.setColorAt(0, blend(fill, Qt::black, 0.5));
    depth.setColorAt(std::min(0.5, 4 * u / body.height()), fill);
    depth.setColorAt(1, fill);
    fillRounded(painter, body, std::max(0.0, radius - line), depth);
}

void lamp(QPainter& painter, const QRect& rect, qreal u, const QColor& color, bool lit) {
    const int line = hairline(u);
    const qreal radius = rect.height() * 0.4;
    if (!lit) {
        fillRounded(painter, rect.adjusted(-line, -line, line, line), radius + line, withAlpha(Qt::black, 0.55));
        QLinearGradient lens(rect.topLeft(), rect.bottomLeft());
        lens.setColorAt(0, blend(color, Qt::black, 0.8));
        lens.setColorAt(1, blend(color, Qt::black, 0.66));
        fillRounded(painter, rect, radius, lens);
        return;
    }
    fillRounded(painter, rect.adjusted(-line, -line, line, line), radius + line, withAlpha(color, 0.55));
    QLinearGradient lens(rect.topLeft(), rect.topRight());
    lens.setColorAt(0, color);
    lens.setColorAt(0.5, blend(color, Qt::white, 0.75));
    lens.setColorAt(1, color);
    fillRounded(painter, rect, radius, lens);
}

void glow(QPainter& painter, const QRectF& rect, qreal reach, const QColor& color, double strength) {
    painter.setPen(Qt::NoPen);
    constexpr int steps = 10;
    // Each ring adds a little, so the light falls off towards the outside.
    for (int i = steps; i > 0; --i) {
        const qreal grow = reach * i / steps;
        painter.setBrush(withAlpha(color, strength / steps * 2 * (1 - double(i - 1) / steps)));
        const qreal radius = grow + 3;
        painter.drawRoundedRect(rect.adjusted(-grow, -grow, grow, grow), radius, radius);
    }
}

void dropShadow(QPainter& painter, const QRectF& rect, qreal radius, qreal blur, double strength) {
    painter.setPen(Qt::NoPen);
    const int steps = std::max(3, qRound(blur));
    const double layer = 1 - std::pow(1 - strength, 1.0 / steps);
    for (int i = 0; i < steps; ++i) {
        const qreal grow = blur * (0.5 - double(i) / steps);
        painter.setBrush(withAlpha(Qt::black, layer));
        const QRectF ring = rect.adjusted(-grow, -grow, grow, grow);
        painter.drawRoundedRect(ring, std::max(1.0, radius + grow), std::max(1.0, radius + grow));
    }
}

void aluminium(QPainter& painter, const QRect& rect, qreal u, const Look& look) {
    const int line = hairline(u);
    const double middle = double(look.tints.aluminium.redF());
    QImage metal(rect.size(), QImage::Format_RGB32);
    std::mt19937 random(4711);
    std::uniform_real_distribution<double> spread(-1, 1);
    for (int y = 0; y < metal.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(metal.scanLine(y));
        const double t = double(y) / std::max(1, metal.height() - 1);
        const double level = middle * (1.12 - 0.34 * t * (0.55 + 0.45 * t));
        const double stroke = spread(random) * 0.022;
        double grain = 0;
        for (int x = 0; x < metal.width(); ++x) {
            grain += 0.055 * (spread(random) * 0.11 - grain); // smeared along the brush
            const double across = double(x) / std::max(1, metal.width() - 1);
            const double sheen = 0.03 * std::cos(across * 2 * M_PI) + 0.006 * std::cos(across * 6 * M_PI);
            const double value = std::clamp(level * (1 + stroke + grain + sheen), 0.0, 1.0);
            const int grey = qRound(value * 255);
            row[x] = qRgb(grey, grey, grey);
        }
    }
    painter.drawImage(rect.topLeft(), metal);
    painter.fillRect(QRect(rect.x(), rect.y(), rect.width(), line), withAlpha(Qt::white, 0.75));
    painter.fillRect(QRect(rect.x(), rect.bottom() - line + 1, rect.width(), line), withAlpha(Qt::black, 0.55));
    painter.fillRect(QRect(rect.x(), rect.y(), line, rect.height()), withAlpha(Qt::white, 0.4));
    painter.fillRect(QRect(rect.right() - line + 1, rect.y(), line, rect.height()), withAlpha(Qt::black, 0.34));
}

void letterpress(QPainter& painter, const QRect& rect, qreal u, const QString& text, const QFont& font,
                 const Look& look) {
    Type::draw(painter, rect.translated(0, hairline(u)), Qt::AlignHCenter, text, font, withAlpha(Qt::white, 0.6));
    Type::draw(painter, rect, Qt::AlignHCenter, text, font, look.tints.aluminiumPrint);
}

void barShadow(QPainter& painter, const QRect& rect) {
    QLinearGradient shadow(rect.topLeft(), rect.bottomLeft());
    shadow.setColorAt(0, withAlpha(Qt::black, 0.5));
    shadow.setColorAt(0.35, withAlpha(Qt::black, 0.24));
    shadow.setColorAt(1, withAlpha(Qt::black, 0));
    painter.fillRect(rect, shadow);
}

void modulePanel(QPainter& painter, const QRect& rect, qreal u, const QColor& fill, const Look& look) {
    const int line = hairline(u);
    painter.fillRect(rect, over(fill, look.palette.appBackground));
    QLinearGradient light(rect.topLeft(), rect.topRight());
    light.setColorAt(0, withAlpha(Qt::white, look.isDark() ? 0.018 : 0.14));
    light.setColorAt(0.5, withAlpha(Qt::white, 0));
    light.setColorAt(1, withAlpha(Qt::black, look.isDark() ? 0.12 : 0.03));
    painter.fillRect(rect, light);
    painter.fillRect(QRect(rect.x(), rect.y(), line, rect.height()), withAlpha(Qt::white, look.isDark() ? 0.075 : 0.5));
    painter.fillRect(QRect(rect.right() - line + 1, rect.y(), line, rect.height()),
                     withAlpha(Qt::black, look.isDark() ? 0.5 : 0.3));
}

} // namespace tessik::Parts
