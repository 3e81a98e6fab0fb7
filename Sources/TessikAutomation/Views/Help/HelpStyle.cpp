#include "TessikAutomation/Views/Help/HelpStyle.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QFontDatabase>

namespace tessik {

HelpColors HelpColors::of(const Look& look) {
    const bool dark = look.isDark();
    const QColor ground = look.palette.appBackground;
    // Pages are read for a long time: in the light theme they are lighter than the desk, and their ink warmer than
    // black.
    const QColor page = look.tints.page;
    const QColor accent = dark ? look.tints.display : look.tints.warning;
    return {.page = page,
            .sidebar = dark ? blend(ground, Qt::black, 0.22) : blend(ground, Qt::white, 0.18),
            .field = dark ? blend(ground, Qt::white, 0.045) : page,
            .divider = over(look.palette.dividerColor, ground),
            .text = blend(look.tints.text, page, dark ? 0.17 : 0.12),
            .strongText = look.tints.text,
            .dimText = look.tints.secondaryText,
            .accent = accent,
            .focus = look.tints.focusRing,
            .selection = dark ? over(withAlpha(accent, 0.15), ground) : blend(ground, Qt::white, 0.75),
            .selectionText = dark ? blend(accent, look.tints.text, 0.35) : look.tints.text,
            .quote = over(withAlpha(accent, 0.07), page),
            .chip = blend(page, look.tints.text, 0.07),
            .chipEdge = blend(page, look.tints.text, 0.2),
            .match = over(withAlpha(look.tints.ledAmber, dark ? 0.36 : 0.6), page)};
}

namespace HelpStyle {

QFont textFont() { return Type::font(15, QFont::Normal); }

QFont titleFont() { return Type::font(28, QFont::DemiBold, -0.4); }

QFont headingFont() { return Type::font(17, QFont::DemiBold); }

QFont tableFont() { return Type::font(14, QFont::Normal); }

QFont codeFont(const QFont& within) {
    QFont code = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    code.setPixelSize(within.pixelSize() - 2);
    return code;
}

QFont listFont() { return Type::font(13, QFont::Normal); }

QString sheet(const HelpColors& colors) {
    QString sheet = QStringLiteral(R"(
#help { background: @page; }
#sidebar { background: @sidebar; border-right: 1px solid @divider; }
#search { background: @field; color: @strongText; border: 1px solid @divider; border-radius: 7px; padding: 5px 6px; }
#search:focus { border-color: @focus; }
#topics { background: transparent; color: @text; border: none; outline: none; }
#topics::item { padding: 6px 8px; margin: 1px 8px; border-radius: 6px; border: 1px solid transparent; }
#topics::item:hover { background: @field; }
#topics::item:selected { background: @selection; color: @selectionText; }
#topics::item:selected:focus { border-color: @focus; }
#page { background: @page; border: none; }
#close { background: transparent; border: 1px solid transparent; border-radius: 6px; padding: 5px; }
#close:hover { background: @chip; }
#close:pressed { background: @selection; }
#close:focus { border-color: @focus; }
#noResultsTitle { color: @strongText; }
#noResultsText { color: @dimText; }
QSplitter::handle { background: transparent; }
QScrollBar:vertical { background: transparent; width: 12px; margin: 0; }
QScrollBar::handle:vertical { background: @chipEdge; min-height: 36px; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical:hover { background: @dimText; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)");
    const std::pair<const char*, const QColor&> names[] = {
        {"@selectionText", colors.selectionText}, // before the name that it starts with
        {"@selection", colors.selection},
        {"@page", colors.page},
        {"@sidebar", colors.sidebar},
        {"@field", colors.field},
        {"@divider", colors.divider},
        {"@text", colors.text},
        {"@focus", colors.focus},
        {"@strongText", colors.strongText},
        {"@dimText", colors.dimText},
        {"@chipEdge", colors.chipEdge},
        {"@chip", colors.chip},
    };
    for (const auto& [name, color] : names)
        sheet.replace(QLatin1String(name), color.name());
    return sheet;
}

} // namespace HelpStyle

} // namespace tessik
