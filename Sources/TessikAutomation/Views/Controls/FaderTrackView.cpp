#include "TessikAutomation/Views/Controls/FaderTrackView.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikKit/Models/FaderDBCalibration.h"

#include <cmath>

namespace tessik {
namespace {

constexpr double maxValue = 127;
constexpr double pageStep = 8;
constexpr char capSprite = 0; // its address identifies the caps, which all faders share

} // namespace

const std::vector<FaderTrackView::Mark>& FaderTrackView::scale() {
    static const std::vector<Mark> marks = [] {
        std::vector<Mark> list;
        for (const auto& point : FaderDBCalibration::referencePoints)
            list.push_back({scaleLabel(point.decibels), point.rawValue / maxValue});
        list.push_back({QStringLiteral("-∞"), 0.0});
        return list;
    }();
    return marks;
}

QString FaderTrackView::scaleLabel(double decibels) {
    return (decibels >= 0 ? QStringLiteral("+") : QString()) + QString::number(int(decibels));
}

double FaderTrackView::centreY(const QRect& rect, double normalizedValue) const {
    return rect.y() + rect.height() - capHeight / 2.0 - (rect.height() - capHeight) * normalizedValue;
}

double FaderTrackView::valueAt(const QRect& rect, double y) const {
    const int travel = rect.height() - capHeight;
    if (travel <= 0) return 0;
    return std::clamp(maxValue * (1 - (y - rect.y() - capHeight / 2.0) / travel), 0.0, maxValue);
}

int FaderTrackView::grooveX(const QRect& rect) const {
    // Labels, ticks, gap, groove, gap, ticks, with the spare width split between both sides.
    if (isNarrow(rect)) return rect.x() + (rect.width() - grooveWidth) / 2;
    return rect.x() + (rect.width() - contentWidth()) / 2 + scaleWidth + Metrics::grooveGap;
}

int FaderTrackView::contentWidth() const { return scaleWidth + tickWidth() + grooveWidth + 2 * Metrics::grooveGap; }

bool FaderTrackView::isNarrow(const QRect& rect) const {
    return rect.width() < contentWidth() + 2 * Metrics::scaleMargin;
}

int FaderTrackView::tickLength(const QRect& rect) const {
    const int beside = (rect.width() - grooveWidth) / 2 - Metrics::grooveGap - Metrics::scaleMargin;
    return isNarrow(rect) ? std::min(Metrics::narrowTick, beside) : tickWidth();
}

QRect FaderTrackView::labelRect(const QRect& rect, double y) const {
    const int left = rect.x() + 1;
    const int right = grooveX(rect) - Metrics::grooveGap - tickLength(rect) - 2;
    return right - left < Metrics::minLabelWidth ? QRect() : QRect(left, qRound(y) - 6, right - left, 12);
}

QRect FaderTrackView::capRect(const QRect& rect, double value) const {
    const int x = grooveX(rect) + (grooveWidth - Metrics::capWidth) / 2;
    const double centre = centreY(rect, std::clamp(value, 0.0, maxValue) / maxValue);
    return {x, qRound(centre - capHeight / 2.0), Metrics::capWidth, capHeight};
}

void FaderTrackView::paintStatic(Canvas& canvas, const QRect& rect) const {
    paintScale(canvas, rect);
    const QRect groove = canvas.px(QRectF(grooveX(rect), rect.y() + 4, grooveWidth, rect.height() - 8));
    Parts::recess(canvas.painter, groove, canvas.scale, canvas.look.tints.slotFloor, groove.width() / 2.0, canvas.look);
    // The slot in its floor, in which the cap's stem runs.
    canvas.painter.fillRect(groove.adjusted(canvas.line(2), canvas.line(4), -canvas.line(2), -canvas.line(4)),
                            over(canvas.look.palette.grooveColor, Qt::black));
}

void FaderTrackView::paintScale(Canvas& canvas, const QRect& rect) const {
    QPainter& painter = canvas.painter;
    const Look& look = canvas.look;
    const int x = grooveX(rect);
    const int left = canvas.px(x - Metrics::grooveGap);
    const int right = canvas.px(x + grooveWidth + Metrics::grooveGap);
    const int thickness = canvas.line();
    const auto tick = [&](double y, int length, const QColor& color) {
        const int top = canvas.px(y) - thickness / 2;
        painter.fillRect(QRect(left - length, top, length, thickness), color);
        painter.fillRect(QRect(right, top, length, thickness), color);
    };
    const int longTick = canvas.px(tickLength(rect));
    const int shortTick = longTick / 2;

    // Short ticks between two marks, each a whole number of decibels or an equal share of them, as space allows.
    for (std::size_t i = 1; i < tickFractions.size() - 1; ++i) {
        const double from = centreY(rect, tickFractions[i - 1].fraction);
        const double to = centreY(rect, tickFractions[i].fraction);
        for (const int parts : {10, 5, 2}) {
            if (std::abs(to - from) / parts < Metrics::minTickSpacing) continue;
            for (int part = 1; part < parts; ++part)
                tick(from + (to - from) * part / parts, shortTick, look.tints.fineTick);
            break;
        }
    }

    // The ends and unity are always labelled; the others only where clear of those.
    std::vector<double> taken;
    const QFont font = Type::font(9 * canvas.scale, QFont::Medium);
    const QFont zeroFont = Type::font(9 * canvas.scale, QFont::Bold);
    const auto label = [&](const Mark& mark) {
        const double y = centreY(rect, mark.fraction);
        const bool zero = mark.label == QLatin1String("+0");
        for (const double other : taken)
            if (std::abs(other - y) < Metrics::minLabelSpacing) return;
        taken.push_back(y);
        const QRect box = canvas.px(QRectF(labelRect(rect, y)));
        if (box.isEmpty()) return;
        const QColor color = zero ? look.tints.scaleZero : withAlpha(look.tints.legend, 0.85);
        // A narrow scale has no signs: above zero is plus, below it minus.
        const QString text = isNarrow(rect) ? mark.label.mid(1) : Type::typeset(mark.label);
        Type::draw(painter, box, Qt::AlignRight, text, zero ? zeroFont : font, color);
    };
    const auto isFixed = [this](std::size_t i) {
        return i + 1 == tickFractions.size() || i + 2 == tickFractions.size() ||
               tickFractions[i].label == QLatin1String("+0");
    };
    for (std::size_t i = 0; i < tickFractions.size(); ++i)
        if (isFixed(i)) label(tickFractions[i]);
    for (std::size_t i = tickFractions.size(); i-- > 0;) {
        const Mark& mark = tickFractions[i];
        if (!isFixed(i)) label(mark);
        const bool zero = mark.label == QLatin1String("+0");
        tick(centreY(rect, mark.fraction), longTick, zero ? look.tints.scaleZero : look.palette.tickColor);
    }
}

void FaderTrackView::paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const {
    const QMargins room = Parts::capShadow;
    const QSize size = canvas.px(QRectF(0, 0, Metrics::capWidth, capHeight)).size();
    const QPoint inner(canvas.px(room.left()), canvas.px(room.top()));
    const QSize whole = size + QSize(inner.x() + canvas.px(room.right()), inner.y() + canvas.px(room.bottom()));
    // The height is rounded on the device, not in logical pixels, so that slow moves are smooth on a fine screen.
    const double centre = centreY(rect, std::clamp(state.value.number, 0.0, maxValue) / maxValue);
    const QPoint at(canvas.px(capRect(rect, 0).x()), qRound(centre * canvas.scale - size.height() / 2.0));
    const QColor line = canvas.look.tints.*accentTint;
    canvas.sprite(&capSprite, line.rgb(), at - inner, whole,
                  [&](QPainter& painter) { Parts::faderCap(painter, QRect(inner, size), canvas.scale, line); });
}

QRect FaderTrackView::movingRect(const QRect& rect, const ControlValue& value) const {
    return capRect(rect, value.number).marginsAdded(Parts::capShadow + QMargins(1, 1, 1, 1));
}

QRect FaderTrackView::focusRect(const QRect& rect, const ControlValue& value) const {
    return capRect(rect, value.number).adjusted(-3, -3, 3, 3);
}

double FaderTrackView::dragged(const QRect& rect, const Drag& drag) const { return valueAt(rect, drag.to.y()); }

std::optional<double> FaderTrackView::keyed(int key, bool, double number) const {
    const auto moved = [number](double by) { return std::clamp(number + by, 0.0, maxValue); };
    switch (key) {
    case Qt::Key_Up: return moved(1);
    case Qt::Key_Down: return moved(-1);
    case Qt::Key_PageUp: return moved(pageStep);
    case Qt::Key_PageDown: return moved(-pageStep);
    case Qt::Key_Home: return 0;
    case Qt::Key_End: return maxValue;
    default: return std::nullopt;
    }
}

QString FaderTrackView::valueText(const ControlValue& value) const {
    return FaderDBCalibration::displayString(qRound(value.number)) + QStringLiteral(" dB");
}

} // namespace tessik
