#include "TessikAutomation/Views/Desk/ModulePanel.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QFontMetricsF>

namespace tessik::ModulePanel {

void paintTitle(Canvas& canvas, const QRect& rect, const QString& text, const QColor& tint) {
    const Look& look = canvas.look;
    const QRect line = canvas.px(QRectF(rect));
    const QFont font = Type::font(8 * canvas.scale, QFont::Bold, 0.9 * canvas.scale);
    Type::draw(canvas.painter, line, Qt::AlignLeft, text, font,
               look.isDark() ? blend(tint, Qt::white, 0.42) : look.tints.moduleLegend);
    const int from = line.x() + qRound(QFontMetricsF(font).horizontalAdvance(text)) + canvas.px(3);
    const int y = line.center().y();
    const QColor groove = look.isDark() ? withAlpha(tint, 0.38) : withAlpha(blend(tint, Qt::black, 0.2), 0.75);
    canvas.painter.fillRect(QRect(from, y, std::max(0, line.right() - from), canvas.line()), groove);
}

} // namespace tessik::ModulePanel
