#include "TessikAutomation/Views/Transport/TimecodeCounter.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Transport/TimecodeText.h"

#include <QAccessibleWidget>

namespace tessik {
namespace {

constexpr QSize counterSize{196, 56};
constexpr QRect digits{6, 4, 184, 32}; // logical, within the widget
constexpr QRect statusLine{14, 38, 168, 12};
constexpr int digitPixels = 27;
constexpr int lampDiameter = 6;
constexpr int glowReach = 5;

/// A screen reader asks for the value when it wants it: twelve announcements a second would drown out everything else.
class CounterAccessible final : public QAccessibleWidget {
public:
    explicit CounterAccessible(TimecodeCounter* counter)
        : QAccessibleWidget(counter, QAccessible::StaticText, QStringLiteral("Timecode")), _counter(*counter) {}
    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
        return QStringList{_counter.timeText(), _counter.lockText(), _counter.rateText()}
            .join(QLatin1Char(' '))
            .trimmed();
    }

private:
    const TimecodeCounter& _counter;
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* counter = qobject_cast<TimecodeCounter*>(object);
    return counter ? new CounterAccessible(counter) : nullptr;
}

} // namespace

TimecodeCounter::TimecodeCounter(MTCClock& clock, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _clock(clock),
      _drawing(drawing),
      _position(clock.currentPosition.addNotifier([this] {
          const auto rate = _clock.currentPosition.value();
          const bool sameRate = rate && _shownRate == rate->frameRate;
          sameRate ? update(digits) : update();
      })),
      _running(clock.isRunning.addNotifier([this] { update(); })) {
    QAccessible::installFactory(makeAccessible);
    setFixedSize(counterSize);
}

QString TimecodeCounter::timeText() const { return TimecodeText::of(_clock.currentPosition.value()); }

QString TimecodeCounter::lockText() const {
    return _clock.isRunning.value() ? QStringLiteral("LOCKED") : QStringLiteral("NO TIMECODE");
}

QString TimecodeCounter::rateText() const {
    const std::optional<TimecodePosition> position = _clock.currentPosition.value();
    return position ? description(position->frameRate) : QString();
}

void TimecodeCounter::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    const QRect whole = canvas.px(QRectF(rect()));
    static const int hollow = 0; // its address identifies the layer
    painter.drawPixmap(0, 0, _drawing.layer(&hollow, whole.size(), [&](QPainter& ground) {
        Parts::recess(ground, whole.adjusted(0, 0, 0, -canvas.line()), canvas.scale, look.tints.displayBackground,
                      5 * canvas.scale, look);
    }));

    const bool running = _clock.isRunning.value();
    const QColor color = running ? look.tints.ledGreen : look.tints.secondaryText;
    TimecodeText::draw(canvas, canvas.px(QRectF(digits)), timeText(), digitPixels, color);
    if (!event->rect().intersects(statusLine)) return;

    const QRect line = canvas.px(QRectF(statusLine));
    const QRectF lamp(line.x(), line.center().y() + 0.5 - canvas.px(lampDiameter) / 2.0, canvas.px(lampDiameter),
                      canvas.px(lampDiameter));
    if (running) Parts::glow(painter, lamp, glowReach * canvas.scale, color, 0.8);
    painter.setPen(Qt::NoPen);
    painter.setBrush(running ? color : withAlpha(color, 0.4));
    painter.drawEllipse(lamp);
    Type::draw(painter, line.adjusted(canvas.px(lampDiameter + 6), 0, 0, 0), Qt::AlignLeft, lockText(),
               Type::font(9 * canvas.scale, QFont::DemiBold, 0.5 * canvas.scale), color);
    Type::draw(painter, line, Qt::AlignRight, rateText(),
               Type::font(9 * canvas.scale, QFont::Medium, 0.1 * canvas.scale), look.tints.secondaryText);
    const std::optional<TimecodePosition> position = _clock.currentPosition.value();
    _shownRate = position ? std::optional(position->frameRate) : std::nullopt;
}

} // namespace tessik
