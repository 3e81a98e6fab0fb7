#include "TessikAutomation/Views/Controls/ConsoleToggle.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QFontMetricsF>

namespace tessik {
namespace {

constexpr int glowReach = 7;
constexpr int legendMargin = 6; // both sides together; a wider legend is condensed

qreal widthOf(const QString& text, const QFont& font) { return QFontMetricsF(font).horizontalAdvance(text); }

} // namespace

void ConsoleToggle::paintKey(Canvas& canvas, QPainter& painter, const QRect& key, bool on, bool pressed,
                             bool hovered) const {
    const Look& look = canvas.look;
    const QColor color = look.tints.*_color;
    const QColor plate = hovered ? blend(look.palette.switchOffFill, Qt::white, look.isDark() ? 0.07 : 0.25)
                                 : look.palette.switchOffFill;
    const QColor unlit = hovered ? look.tints.text : look.tints.legend;
    if (!_showsLED) {
        QFont bold = Type::font(9 * canvas.scale, QFont::Bold, 0.6 * canvas.scale);
        if (widthOf(_label, bold) > key.width() - canvas.px(legendMargin))
            bold = Type::font(8 * canvas.scale, QFont::Bold);
        if (on)
            Parts::litPlate(painter, key, canvas.scale, color, pressed);
        else
            Parts::raisedPlate(painter, key, canvas.scale, plate, look.tints, pressed);
        if (on)
            Type::draw(painter, key.translated(0, canvas.line()), Qt::AlignHCenter, _label, bold,
                       withAlpha(Qt::black, 0.35));
        Type::draw(painter, key, Qt::AlignHCenter, _label, bold, on ? QColor(Qt::white) : unlit);
        return;
    }
    Parts::raisedPlate(painter, key, canvas.scale, plate, look.tints, pressed);
    QRect lamp(0, 0, canvas.px(Metrics::lampWidth), canvas.px(Metrics::lampHeight));
    lamp.moveCenter(QPoint(key.center().x(), 0));
    lamp.moveTop(key.y() + canvas.px(key.height() < canvas.px(Metrics::keyHeight) ? 3 : 4));
    if (on) {
        painter.save();
        painter.setClipRect(key.adjusted(canvas.line(), canvas.line(), -canvas.line(), -canvas.line()));
        Parts::glow(painter, lamp, canvas.px(9), color, look.isDark() ? 0.36 : 0.75);
        painter.restore();
    }
    Parts::lamp(painter, lamp, canvas.scale, color, on);
    const QRect legend(key.x(), lamp.bottom() + 1, key.width(), key.bottom() - lamp.bottom() - canvas.line());
    QFont font = Type::font(8 * canvas.scale, QFont::DemiBold, 0.3 * canvas.scale);
    if (widthOf(_label, font) > legend.width() - canvas.px(legendMargin))
        font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    const bool isShort = !_shortLabel.isEmpty() && widthOf(_label, font) > legend.width() - 2 * canvas.line();
    const QColor lit = look.isDark() ? look.tints.litLegend : QColor(Qt::black);
    Type::draw(painter, legend, Qt::AlignHCenter, isShort ? _shortLabel : _label, font, on ? lit : unlit);
}

void ConsoleToggle::paintStatic(Canvas& canvas, const QRect& rect) const {
    paintKey(canvas, canvas.painter, canvas.px(QRectF(rect)), false, false, false);
}

void ConsoleToggle::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const bool on = state.value.number != 0;
    if (!on && !state.pressed && !state.hovered) return;
    const QRect key = canvas.px(QRectF(rect));
    const int reach = canvas.px(glowReach);
    const std::uint32_t variant = (on ? 1u : 0u) | (state.pressed ? 2u : 0u) | (state.hovered ? 4u : 0u);
    canvas.sprite(this, variant, key.topLeft() - QPoint(reach, reach), key.size() + 2 * QSize(reach, reach),
                  [&](QPainter& painter) {
                      const QRect own(QPoint(reach, reach), key.size());
                      if (on && !_showsLED) Parts::glow(painter, own, reach, canvas.look.tints.*_color, 0.3);
                      paintKey(canvas, painter, own, on, state.pressed, state.hovered);
                  });
}

QRect ConsoleToggle::movingRect(const QRect& rect, const ControlValue&) const {
    return rect.adjusted(-glowReach - 1, -glowReach - 1, glowReach + 1, glowReach + 1);
}

std::optional<double> ConsoleToggle::keyed(int key, bool, double) const {
    if (key == Qt::Key_Up) return 1;
    if (key == Qt::Key_Down) return 0;
    return std::nullopt;
}

QString ConsoleToggle::valueText(const ControlValue& value) const {
    return value.number != 0 ? QStringLiteral("on") : QStringLiteral("off");
}

} // namespace tessik
