#pragma once

#include <QProxyStyle>

namespace tessik {

/// What Qt draws itself, with the signs and the type of questions and alerts as this program's own.
class DialogStyle final : public QProxyStyle {
public:
    DialogStyle();

    QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override;
    /// Buttons have no icons, whatever the platform thinks.
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    using QProxyStyle::polish;
    /// Tooltips have a soft rim.
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    /// The first line of a question is its title, and no line of it is so short that the text becomes a column.
    void polish(QWidget* widget) override;
};

} // namespace tessik
