#include "TessikAutomation/Views/Drawing/SVGSymbol.h"

#include <QSvgRenderer>

static void initResources() { Q_INIT_RESOURCE(symbols); } // the macro does not work inside a namespace

namespace tessik {

Symbol svgSymbol(const QString& resource) {
    const auto drawing = std::make_shared<QSvgRenderer>(resource);
    return [drawing](QPainter& painter, const QRectF& rect, const QColor& color) {
        QImage shape(rect.size().toSize(), QImage::Format_ARGB32_Premultiplied);
        shape.fill(Qt::transparent);
        QPainter inside(&shape);
        inside.setRenderHint(QPainter::Antialiasing);
        drawing->render(&inside);
        inside.setCompositionMode(QPainter::CompositionMode_SourceIn);
        inside.fillRect(shape.rect(), color);
        inside.end();
        painter.drawImage(rect.topLeft().toPoint(), shape);
    };
}

Symbol symbolNamed(const QString& name) {
    initResources();
    return svgSymbol(QStringLiteral(":/symbols/") + name);
}

} // namespace tessik
