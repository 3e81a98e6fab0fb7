#include "TessikAutomation/Views/Window/ActivityLamp.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <cmath>

namespace tessik {
namespace {

constexpr int lampHeight = 12;
constexpr QSize slit(9, 4);
constexpr int gap = 4;
constexpr int edge = 2;

QFont legendFont(qreal scale) { return Type::font(8 * scale, QFont::DemiBold, 0.3 * scale); }

} // namespace

ActivityLamp::ActivityLamp(const QString& legend, DrawingContext& drawing, QWidget* parent, const UptimeClock& clock)
    : QWidget(parent),
      _legend(legend),
      _drawing(drawing),
      _clock(clock),
      _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setFixedSize(sizeHint());
    _timer.setSingleShot(true);
    _timer.callOnTimeout([this] { checkHold(); });
}

QSize ActivityLamp::sizeHint() const {
    const int legend = int(std::ceil(QFontMetricsF(legendFont(1)).horizontalAdvance(_legend)));
    return {edge + legend + gap + slit.width() + edge, lampHeight};
}

void ActivityLamp::flash() {
    _lastMessage = _clock.now();
    if (std::exchange(_isLit, true)) return;
    _timer.start(hold);
    update();
}

void ActivityLamp::checkHold() {
    if (!_isLit) return;
    const Uptime left = _lastMessage + hold - _clock.now();
    if (left > Uptime::zero()) {
        _timer.start(std::chrono::ceil<std::chrono::milliseconds>(left));
        return;
    }
    _isLit = false;
    update();
}

void ActivityLamp::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    Type::draw(painter, canvas.px(QRectF(edge, 0, width(), height())), Qt::AlignLeft, _legend, legendFont(canvas.scale),
               canvas.look.tints.secondaryText);
    const QPointF corner(width() - edge - slit.width(), (height() - slit.height()) / 2.0);
    Parts::lamp(painter, canvas.px(QRectF(corner, QSizeF(slit))), canvas.scale, canvas.look.tints.ledGreen, _isLit);
}

} // namespace tessik
