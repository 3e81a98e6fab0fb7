#include "TessikAutomation/Views/Window/BannerView.h"

#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainterPath>
#include <QPushButton>

namespace tessik {

BannerView::BannerView(DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _drawing(drawing),
      _text(new QLabel(this)),
      _actionButton(new QPushButton(this)),
      _dismiss(new QPushButton(QStringLiteral("✕"), this)),
      _lookObserver(drawing.look.addNotifier([this] { applyLook(); })) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedHeight(Metrics::bannerHeight);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(44, 0, 12, 0);
    layout->setSpacing(10);
    layout->addWidget(_text);
    layout->addWidget(_actionButton);
    layout->addStretch(1);
    layout->addWidget(_dismiss);
    _dismiss->setObjectName(QStringLiteral("dismiss"));
    _dismiss->setAccessibleName(QStringLiteral("Dismiss"));
    for (QPushButton* button : {_actionButton, _dismiss})
        button->setFocusPolicy(Qt::TabFocus);
    connect(_actionButton, &QPushButton::clicked, this, [this] {
        if (_action) _action();
    });
    connect(_dismiss, &QPushButton::clicked, this, &BannerView::dismissed);
}

void BannerView::applyLook() {
    AppStyle::applySheet(*this,
                         QStringLiteral("QLabel { color: @text; }"
                                        "QPushButton { color: @text; background: @field; border: 1px solid @fieldEdge;"
                                        "  border-radius: 5px; padding: 4px 14px; }"
                                        "QPushButton:hover { background: @hover; }"
                                        "QPushButton:focus { border-color: @accent; }"
                                        "QPushButton#dismiss { background: transparent; border: 1px solid transparent;"
                                        "  padding: 4px 8px; color: @secondary; }"
                                        "QPushButton#dismiss:hover { color: @text; }"
                                        "QPushButton#dismiss:focus { border-color: @accent; }"),
                         *_drawing.look.value());
    update();
}

void BannerView::setMessage(const QString& text, const QString& actionText, std::function<void()> action) {
    _text->setText(text);
    _actionButton->setText(actionText);
    _actionButton->setVisible(!actionText.isEmpty());
    _action = std::move(action);
    applyLook(); // a sheet set before the line was ever shown would not reach its children
}

void BannerView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Look& look = *_drawing.look.value();
    const QColor warning = look.tints.warning;
    painter.fillRect(rect(), blend(look.palette.appBackground, warning, look.isDark() ? 0.16 : 0.2));
    painter.fillRect(0, 0, 4, height(), warning);
    painter.fillRect(0, height() - 1, width(), 1, withAlpha(Qt::black, 0.5));
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath triangle(QPointF(25, 12));
    triangle.lineTo(34, 28);
    triangle.lineTo(16, 28);
    triangle.closeSubpath();
    painter.setPen(QPen(warning, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(warning);
    painter.drawPath(triangle);
    painter.setPen(QPen(look.isDark() ? Qt::black : Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(25, 17.5), QPointF(25, 22));
    painter.drawPoint(QPointF(25, 25.6));
}

} // namespace tessik
