#include "TessikAutomation/Views/Theme/AppStyle.h"

#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/DialogStyle.h"
#include "TessikAutomation/Views/Theme/ToolTips.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>
#include <QWidget>

namespace tessik::AppStyle {
namespace {

struct SheetColors {
    QColor sheet, card, line, field, fieldEdge, hover, text, secondary, accent, primary, handle, rail;
};

SheetColors sheetColors(const Look& look) {
    const bool dark = look.isDark();
    const Palette& palette = look.palette;
    const QColor ground = palette.appBackground;
    return {.sheet = blend(ground, Qt::white, dark ? 0.03 : 0.35),
            .card = blend(ground, Qt::white, dark ? 0.075 : 0.8),
            .line = over(palette.dividerColor, ground),
            .field = blend(palette.switchOffFill, Qt::white, dark ? 0.09 : 0.65),
            .fieldEdge = blend(ground, Qt::black, dark ? 0.5 : 0.28),
            .hover = blend(palette.switchOffFill, Qt::white, dark ? 0.16 : 0.85),
            .text = look.tints.text,
            .secondary = look.tints.secondaryText,
            .accent = look.tints.focusRing,
            .primary = QColor(0x16, 0x6F, 0xDE),
            .handle = blend(ground, dark ? Qt::white : Qt::black, 0.3),
            .rail = look.railColor()};
}

} // namespace

ColorScheme install() {
    static const ColorScheme reported = [] {
        const QPalette system = QApplication::palette();
        const bool isLight =
            system.color(QPalette::Window).lightness() > system.color(QPalette::WindowText).lightness();
        QApplication::setStyle(new DialogStyle);
        Type::installFonts();
        QApplication::setFont(Type::font(13, QFont::Normal));
        QToolTip::setFont(Type::font(12, QFont::Medium));
        ToolTips::install();
        return isLight ? ColorScheme::light : ColorScheme::dark;
    }();
    return reported;
}

void apply(const Look& look) {
    const SheetColors colors = sheetColors(look);
    QPalette palette(colors.field, colors.sheet);
    palette.setColor(QPalette::WindowText, colors.text);
    palette.setColor(QPalette::Text, colors.text);
    palette.setColor(QPalette::ButtonText, colors.text);
    palette.setColor(QPalette::Base, colors.card);
    palette.setColor(QPalette::AlternateBase, colors.sheet);
    palette.setColor(QPalette::PlaceholderText, colors.secondary);
    palette.setColor(QPalette::Highlight, colors.primary);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::Text, withAlpha(colors.text, 0.4));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, withAlpha(colors.text, 0.4));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, withAlpha(colors.text, 0.4));
    palette.setColor(QPalette::ToolTipBase, colors.card);
    palette.setColor(QPalette::ToolTipText, colors.text);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

void applySheet(QWidget& widget, QString sheet, const Look& look) {
    const SheetColors colors = sheetColors(look);
    const std::pair<const char*, QColor> names[]{
        {"@sheet", colors.sheet},         {"@card", colors.card},           {"@line", colors.line},
        {"@fieldEdge", colors.fieldEdge}, {"@field", colors.field},         {"@hover", colors.hover},
        {"@text", colors.text},           {"@secondary", colors.secondary}, {"@accent", colors.accent},
        {"@primary", colors.primary},     {"@handle", colors.handle},       {"@rail", colors.rail}};
    for (const auto& [name, color] : names)
        sheet.replace(QLatin1String(name), color.name());
    widget.setStyleSheet(sheet);
}

} // namespace tessik::AppStyle
