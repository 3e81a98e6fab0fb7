#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Theme/Materials.h"

#include <QLinearGradient>
#include <QPainterPath>

namespace tessik::Parts {
namespace {

/// The cap's profile from top to bottom: two scooped halves that meet at the index line.
constexpr struct {
    double at;
    int level;
} profile[]{{0.00, 118}, {0.04, 94}, {0.10, 84}, {0.22, 66}, {0.36, 43}, {0.46, 29},
            {0.54, 54},  {0.64, 64}, {0.78, 78}, {0.86, 66}, {0.95, 50}, {1.00, 30}};

void ridge(QPainter& painter, int x, int y, int width, int thickness) {
    painter.fillRect(QRect(x, y, width, thickness), withAlpha(Qt::black, 0.549));
    painter.fillRect(QRect(x, y + thickness, width, thickness), withAlpha(Qt::white, 0.227));
}

} // namespace

void faderCap(QPainter& painter, const QRect& cap, qreal u, const QColor& line) {
    const auto px = [u](qreal logical) { return qRound(logical * u); };
    const int hair = std::max(1, px(1));
    const qreal radius = 2.6 * u;

    // A long soft shadow away from the light, and a tight one where the cap is closest to the panel.
    dropShadow(painter, QRectF(cap).adjusted(1 * u, 8 * u, 3 * u, 8 * u), radius + 3 * u, 13 * u, 0.52);
    dropShadow(painter, QRectF(cap).adjusted(0.5 * u, 1.5 * u, 1.5 * u, 3 * u), radius + u, 6 * u, 0.68);

    painter.setPen(Qt::NoPen);
    painter.setBrush(Materials::black);
    painter.drawRoundedRect(QRectF(cap).adjusted(-hair, -hair, hair, hair), radius + hair, radius + hair);

    QPainterPath outline;
    outline.addRoundedRect(QRectF(cap), radius, radius);
    painter.save();
    painter.setClipPath(outline);

    QLinearGradient body(cap.topLeft(), QPointF(cap.x(), cap.y() + cap.height()));
    for (const auto& stop : profile)
        body.setColorAt(stop.at, QColor(stop.level, stop.level, stop.level + 1));
    painter.fillRect(cap, body);

    const int ridgeX = cap.x() + px(3);
    const int ridgeWidth = cap.width() - 2 * px(3);
    const double half = cap.height() / 2.0;
    for (int i = 0; i < 5; ++i) {
        ridge(painter, ridgeX, cap.y() + qRound(half * (0.235 + 0.132 * i)), ridgeWidth, hair);
        ridge(painter, ridgeX, cap.y() + qRound(half * (1.225 + 0.132 * i)), ridgeWidth, hair);
    }

    // The flanks: bright towards the light, dark away from it.
    QLinearGradient flanks(cap.topLeft(), QPointF(cap.x() + cap.width(), cap.y()));
    flanks.setColorAt(0.00, withAlpha(Qt::white, 0.243));
    flanks.setColorAt(0.05, withAlpha(Qt::white, 0.118));
    flanks.setColorAt(0.12, withAlpha(Qt::white, 0.0157));
    flanks.setColorAt(0.50, withAlpha(Qt::white, 0.0314));
    flanks.setColorAt(0.86, withAlpha(Qt::black, 0));
    flanks.setColorAt(0.94, withAlpha(Qt::black, 0.196));
    flanks.setColorAt(1.00, withAlpha(Qt::black, 0.51));
    painter.fillRect(cap, flanks);

    // The lit upper edge.
    painter.fillRect(QRect(cap.x() + hair, cap.y(), cap.width() - 2 * hair, hair), withAlpha(Qt::white, 0.541));
    painter.fillRect(QRect(cap.x(), cap.y() + hair, cap.width(), hair), withAlpha(Qt::white, 0.118));

    const int band = 2 * hair + px(2);
    const int bandTop = cap.y() + (cap.height() - band) / 2;
    painter.fillRect(QRect(cap.x(), bandTop, cap.width(), band), Materials::black);
    painter.fillRect(QRect(cap.x() + hair, bandTop + hair, cap.width() - 2 * hair, band - 2 * hair), line);
    painter.restore();
}

} // namespace tessik::Parts
