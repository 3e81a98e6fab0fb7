#include "TessikAutomation/Views/Theme/DialogStyle.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QLabel>
#include <QStyleFactory>
#include <QStyleOption>

namespace tessik {

namespace {

constexpr int minimumTextWidth = 340;

struct Sign {
    const char* letter;
    QColor color;
};

std::optional<Sign> signOf(QStyle::StandardPixmap which) {
    switch (which) {
    case QStyle::SP_MessageBoxQuestion: return Sign{"?", {0x2F, 0x80, 0xE8}};
    case QStyle::SP_MessageBoxInformation: return Sign{"i", {0x2F, 0x80, 0xE8}};
    case QStyle::SP_MessageBoxWarning: return Sign{"!", {0xD9, 0x8A, 0x1C}};
    case QStyle::SP_MessageBoxCritical: return Sign{"!", {0xD2, 0x44, 0x36}};
    default: return std::nullopt;
    }
}

/// A lit lamp with the letter on it; large, because icons are only ever scaled down.
QPixmap drawn(const Sign& sign) {
    constexpr int side = 192;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc = QRectF(pixmap.rect()).adjusted(12, 12, -12, -12);
    QLinearGradient light(disc.topLeft(), disc.bottomLeft());
    light.setColorAt(0, sign.color.lighter(118));
    light.setColorAt(1, sign.color.darker(118));
    painter.setBrush(light);
    painter.setPen(QPen(sign.color.darker(170), 4));
    painter.drawEllipse(disc);
    Type::draw(painter, pixmap.rect(), Qt::AlignHCenter, QLatin1String(sign.letter), Type::font(112, QFont::DemiBold),
               Qt::white);
    return pixmap;
}

} // namespace

DialogStyle::DialogStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

QIcon DialogStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
    const std::optional<Sign> sign = signOf(which);
    return sign ? QIcon(drawn(*sign)) : QProxyStyle::standardIcon(which, option, widget);
}

int DialogStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* returned) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void DialogStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    if (element != PE_PanelTipLabel) return QProxyStyle::drawPrimitive(element, option, painter, widget);
    painter->fillRect(option->rect, option->palette.toolTipBase());
    QColor rim = option->palette.toolTipText().color();
    rim.setAlphaF(0.3f);
    painter->setPen(rim);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
}

void DialogStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (widget->objectName() == QLatin1String("qt_msgbox_label")) widget->setFont(Type::font(14, QFont::DemiBold));
    if (widget->objectName() == QLatin1String("qt_msgbox_informativelabel")) widget->setMinimumWidth(minimumTextWidth);
}

} // namespace tessik
