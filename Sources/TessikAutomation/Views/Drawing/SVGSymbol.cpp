#include "TessikAutomation/Views/Drawing/SVGSymbol.h"

#include <QSvgRenderer>

static void initResources() { Q_INIT_RESOURCE(symbols); } // the macro does not work inside a namespace

namespace tessik {

Symbol symbolNamed(const QString& name) {
    initResources();
    const auto drawing = std::make_shared<QSvgRenderer>(QStringLiteral(":/symbols/") + name);
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

QIcon symbolIcon(const QString& name, const QColor& color) {
    const Symbol symbol = symbolNamed(name);
    QIcon icon;
    for (const int scale : {1, 2, 3}) {
        QPixmap pixmap(QSize(16, 16) * scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        symbol(painter, pixmap.rect(), color);
        painter.end();
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon signNamed(const QString& name) {
    initResources();
    return QIcon(QStringLiteral(":/signs/%1.svg").arg(name));
}

} // namespace tessik
