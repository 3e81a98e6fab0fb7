#pragma once

#include <QProxyStyle>

namespace tessik {

/// What Qt draws itself, but with the program's own icons and type in questions and alerts.
class DialogStyle final : public QProxyStyle {
public:
    DialogStyle();

    QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override;
    /// Buttons have no icons, whatever the platform says.
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    using QProxyStyle::polish;
    /// Tooltips have a soft border.
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    /// The first line of a question is its title, and the text is kept wide enough not to become a narrow column.
    void polish(QWidget* widget) override;
};

} // namespace tessik
