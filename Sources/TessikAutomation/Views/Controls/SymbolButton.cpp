#include "TessikAutomation/Views/Controls/SymbolButton.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QKeyEvent>

#include <cmath>

namespace tessik {
namespace {

constexpr int buttonHeight = 28;
constexpr int symbolSide = 14;
constexpr int padding = 8;
constexpr int gap = 6;
constexpr int lampSide = 6;
constexpr qreal textSize = 11;

} // namespace

SymbolButton::SymbolButton(Face face, const QString& symbol, const QString& text, DrawingContext& drawing,
                           QWidget* parent)
    : PanelButton(text, nullptr, drawing, parent), _face(face) {
    setSymbol(symbol);
    setAccessibleName(text);
}

QSize SymbolButton::sizeHint() const {
    if (text().isEmpty()) return {buttonHeight, buttonHeight};
    return {isLegendVisible() ? widthWithText() : widthOf(false), buttonHeight};
}

int SymbolButton::widthWithText() const {
    const int width = int(std::ceil(QFontMetricsF(Type::font(textSize, QFont::DemiBold)).horizontalAdvance(text())));
    return Metrics::toGridUp(2 * padding + symbolSide + gap + width);
}

void SymbolButton::setSymbol(const QString& name) {
    if (name == _symbolName) return;
    _symbolName = name;
    _symbol = symbolNamed(name);
    update();
}

void SymbolButton::setColor(QColor Tints::*color) {
    _color = color;
    update();
}

void SymbolButton::setCalling(bool calling) {
    _isCalling = calling;
    update();
}

void SymbolButton::keyPressEvent(QKeyEvent* event) {
    if (_face == Face::plate) return PanelButton::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        event->ignore();
}

void SymbolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    const QRect whole = canvas.px(QRectF(rect()));
    const int inset = canvas.line(2);
    const QRect key = whole.adjusted(inset, inset, -inset, -inset);
    if (_face == Face::plate) {
        const QColor unlit = look.palette.switchOffFill;
        const QColor fill = isHot() ? blend(unlit, Qt::white, look.isDark() ? 0.06 : 0.25) : unlit;
        Parts::raisedPlate(painter, key, canvas.scale, fill, look.tints, isDown() || isChecked());
    } else if (isHot()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(withAlpha(look.tints.text, isDown() ? 0.2 : 0.1));
        painter.drawRoundedRect(QRectF(key), 5 * canvas.scale, 5 * canvas.scale);
    }

    const int side = canvas.px(symbolSide);
    const int left = !isLegendVisible() ? key.x() + (key.width() - side) / 2 : key.x() + canvas.px(padding) - inset;
    const QRect symbol(left, key.y() + (key.height() - side) / 2, side, side);
    _symbol(painter, symbol, look.tints.*_color);
    if (isLegendVisible()) {
        const int textLeft = symbol.right() + 1 + canvas.px(gap);
        Type::draw(painter, QRect(textLeft, key.y(), key.right() - textLeft, key.height()), Qt::AlignLeft, text(),
                   Type::font(textSize * canvas.scale, QFont::DemiBold), look.tints.legend);
    }
    if (_isCalling) { // on the symbol's corner, where there is no text
        const int lamp = canvas.px(lampSide);
        Parts::lamp(painter, QRect(symbol.right() - lamp / 2, symbol.y() - lamp / 3, lamp, lamp), canvas.scale,
                    look.tints.ledAmber, true);
    }
    drawFocus(canvas, whole);
}

} // namespace tessik
