#include "TessikAutomation/Views/Controls/TextLine.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <cmath>

namespace tessik {

TextLine::TextLine(const QFont& font, int height, QColor Tints::*color, DrawingContext& drawing, QWidget* parent)
    : QLabel(parent), _color(color), _drawing(drawing), _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setFont(font);
    setTextFormat(Qt::PlainText);
    setFixedHeight(height);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize TextLine::sizeHint() const { return {int(std::ceil(QFontMetricsF(font()).horizontalAdvance(text()))), height()}; }

void TextLine::resizeEvent(QResizeEvent*) { setToolTip(isElided() ? text() : QString()); }

void TextLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString shown = isElided() ? QFontMetricsF(font()).elidedText(text(), Qt::ElideRight, width()) : text();
    Type::draw(painter, rect(), Qt::AlignRight, shown, font(), _drawing.look.value()->tints.*_color);
}

} // namespace tessik
