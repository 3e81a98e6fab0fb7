#include "TessikAutomation/Views/Window/HeaderView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Window/ActivityLamp.h"

#include <QHBoxLayout>
#include <QLinearGradient>
#include <QPainterPath>

#include <cmath>

namespace tessik {
namespace {

constexpr int margin = 12;
constexpr int lampsTop = 4;
constexpr int titleWidth = 420;
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

HeaderView::HeaderView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _drawing(drawing),
      _layout(new QHBoxLayout(this)),
      _settings(new PanelButton(QStringLiteral("SETTINGS"), paintGear, drawing, this)),
      _problems(new SymbolButton(SymbolButton::Face::plate, QStringLiteral("warning"), {}, drawing, this)),
      _lamps(new QHBoxLayout) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedHeight(Metrics::headerHeight);
    _layout->setContentsMargins(margin, 0, margin, 0);
    _layout->setSpacing(margin);
    _layout->addStretch(1);
    auto* end = new QVBoxLayout;
    end->setContentsMargins(0, lampsTop, 0, 0);
    end->setSpacing(2);
    _lamps->setSpacing(0);
    end->addLayout(_lamps);
    end->addWidget(_settings);
    end->addStretch(1);
    _layout->addLayout(end);
    addLamps(objects);
    _observers.push_back(drawing.look.addNotifier([this] { update(); }));
    setHelpContext(*_problems, HelpContext::problems);
    _problems->installEventFilter(this);
    _problems->hide();
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

/// A lamp each for what comes from the desk and what goes to it.
void HeaderView::addLamps(const AppObjects& objects) {
    const auto add = [this](const QString& legend, const QString& path, auto& count, auto& status) {
        auto* lamp = new ActivityLamp(legend, _drawing, this);
        lamp->setAccessibleName(path + QStringLiteral(" activity"));
        setHelpContext(*lamp, HelpContext::settings);
        const auto name = [lamp, path, &status] {
            lamp->setToolTip(
                QStringLiteral("%1 — %2\nLights while messages pass, whatever they say").arg(path, status.value()));
        };
        name();
        _observers.push_back(status.addNotifier(name));
        _observers.push_back(count.addNotifier([lamp] { lamp->flash(); }));
        _lamps->addWidget(lamp);
        return lamp;
    };
    MIDIInputConnection& input = objects.midiManager.connection;
    MIDIDestinationPort& output = objects.midiOutput.port;
    add(QStringLiteral("IN"), QStringLiteral("MIDI In"), input.rawPacketListCount, input.statusText);
    _lamps->addStretch(1);
    add(QStringLiteral("OUT"), QStringLiteral("MIDI Out"), output.sentCount, output.statusText);
}

int HeaderView::titleRight() const { return _settings->x() - margin; }

int HeaderView::titleLeft() const {
    const QWidget* neighbour = _automation ? _automation : _transport;
    return std::max(neighbour ? neighbour->geometry().right() + margin : 0, titleRight() - titleWidth);
}

/// Below the title, with as much of its text as there is room for.
void HeaderView::placeProblemsKey() {
    _problems->setText(_problems->accessibleName());
    int width = _problems->sizeHint().width();
    if (width > titleRight() - titleLeft()) {
        _problems->setText({});
        width = _problems->sizeHint().width();
    }
    _problems->setGeometry(titleRight() - width, height() - _problems->sizeHint().height() - 2, width,
                           _problems->sizeHint().height());
    update();
}

void HeaderView::resizeEvent(QResizeEvent*) { placeProblemsKey(); }

bool HeaderView::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) placeProblemsKey();
    return handled;
}

bool HeaderView::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide || event->type() == QEvent::ToolTipChange)
        placeProblemsKey();
    return false;
}

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

    const int left = titleLeft();
    if (titleRight() - left < minTitleWidth) return;
    const int rise = _problems->isHidden() ? 0 : 14;
    const auto line = [&](int top, int height, const QString& text, const QFont& font, const QColor& color) {
        const QRect rect = canvas.px(QRectF(left, top - rise, titleRight() - left, height));
        Type::draw(painter, rect, Qt::AlignRight, QFontMetrics(font).elidedText(text, Qt::ElideRight, rect.width()),
                   font, color);
    };
    line(18, 20, _title, Type::font(15 * canvas.scale, QFont::DemiBold), look.tints.text);
    line(41, 14, _detail, Type::font(11 * canvas.scale, QFont::Medium), look.tints.secondaryText);
}

} // namespace tessik
