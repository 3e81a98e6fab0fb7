#include "TessikAutomation/Views/Theme/DialogStyle.h"

#include "TessikAutomation/Views/Drawing/SVGSymbol.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QLabel>
#include <QStyleFactory>
#include <QStyleOption>

namespace tessik {

namespace {

constexpr int minimumTextWidth = 340;

const char* signOf(QStyle::StandardPixmap which) {
    switch (which) {
    case QStyle::SP_MessageBoxQuestion: return "question";
    case QStyle::SP_MessageBoxInformation: return "information";
    case QStyle::SP_MessageBoxWarning: return "alert";
    case QStyle::SP_MessageBoxCritical: return "failure";
    default: return nullptr;
    }
}

} // namespace

DialogStyle::DialogStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

QIcon DialogStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
    const char* const sign = signOf(which);
    return sign ? signNamed(QLatin1String(sign)) : QProxyStyle::standardIcon(which, option, widget);
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
