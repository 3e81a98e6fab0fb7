#include "TessikAutomation/Views/Window/HeaderView.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QHBoxLayout>
#include <QLinearGradient>
#include <QPainterPath>

#include <cmath>

namespace tessik {
namespace {

constexpr int margin = 12;
constexpr int minTitleWidth = 96; // in less the session's name says nothing; the window's title has it too

void paintGear(QPainter& painter, const QRectF& rect, const QColor& color) {
    QPainterPath gear;
    constexpr int teeth = 8;
    const qreal outer = rect.width() / 2;
    const qreal inner = outer * 0.74;
    const QPointF centre = rect.center();
    for (int i = 0; i < teeth * 4; ++i) {
        const qreal angle = (i - 0.5) * M_PI / (teeth * 2);
        const qreal radius = i % 4 < 2 ? outer : inner;
        const QPointF point = centre + radius * QPointF(std::cos(angle), std::sin(angle));
        i == 0 ? gear.moveTo(point) : gear.lineTo(point);
    }
    gear.closeSubpath();
    gear.addEllipse(centre, outer * 0.34, outer * 0.34);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPath(gear);
}

} // namespace

HeaderView::HeaderView(DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _drawing(drawing),
      _layout(new QHBoxLayout(this)),
      _settings(new PanelButton(QStringLiteral("SETTINGS"), paintGear, drawing, this)),
      _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedHeight(Metrics::headerHeight);
    _layout->setContentsMargins(margin, 0, margin, 0);
    _layout->setSpacing(margin);
    _layout->addStretch(1);
    _layout->addWidget(_settings);
    _settings->setToolTip(QStringLiteral("Settings  (Ctrl+,)"));
    connect(_settings, &QAbstractButton::clicked, this, &HeaderView::settingsRequested);
}

void HeaderView::place(QWidget*& slot, QWidget* panel, int index) {
    delete std::exchange(slot, panel);
    if (panel) _layout->insertWidget(index, panel);
    update();
}

void HeaderView::setTransportPanel(QWidget* panel) { place(_transport, panel, 0); }
void HeaderView::setAutomationPanel(QWidget* panel) { place(_automation, panel, _transport ? 1 : 0); }

void HeaderView::setTitle(const QString& title, const QString& detail) {
    _title = title;
    _detail = detail;
    setAccessibleName(title + QStringLiteral(", ") + detail);
    update();
}

void HeaderView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    const Look& look = canvas.look;
    const QRect whole = canvas.px(QRectF(rect()));
    QLinearGradient face(whole.topLeft(), whole.bottomLeft());
    face.setColorAt(0, look.tints.headerTop);
    face.setColorAt(1, look.tints.headerBottom);
    painter.fillRect(whole, face);
    painter.fillRect(QRect(0, 0, whole.width(), canvas.line()), withAlpha(Qt::white, look.isDark() ? 0.1 : 0.8));
    painter.fillRect(QRect(0, whole.height() - canvas.line(), whole.width(), canvas.line()),
                     withAlpha(Qt::black, 0.75));

    const int right = _settings->x() - margin;
    const QWidget* neighbour = _automation ? _automation : _transport;
    const int left = std::max(neighbour ? neighbour->geometry().right() + margin : 0, right - 420);
    if (right - left < minTitleWidth) return;
    const auto line = [&](int top, int height, const QString& text, const QFont& font, const QColor& color) {
        const QRect rect = canvas.px(QRectF(left, top, right - left, height));
        Type::draw(painter, rect, Qt::AlignRight, QFontMetrics(font).elidedText(text, Qt::ElideRight, rect.width()),
                   font, color);
    };
    line(18, 20, _title, Type::font(15 * canvas.scale, QFont::DemiBold), look.tints.text);
    line(41, 14, _detail, Type::font(11 * canvas.scale, QFont::Medium), look.tints.secondaryText);
}

} // namespace tessik
