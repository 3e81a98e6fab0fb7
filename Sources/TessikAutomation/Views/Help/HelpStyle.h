#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

#include <QFont>

namespace tessik {

/// The colours of the help window.
struct HelpColors {
    QColor page;
    QColor sidebar;
    QColor field; ///< the search field
    QColor divider;
    QColor text;
    QColor strongText; ///< titles and bold
    QColor dimText;    ///< prompts, markers of lists, the header row of tables
    QColor accent;     ///< links and the numbers of steps
    QColor focus;
    QColor selection; ///< behind the chosen topic
    QColor selectionText;
    QColor quote; ///< behind a quote
    QColor chip;  ///< behind code and keys
    QColor chipEdge;
    QColor match; ///< behind what was searched for

    static HelpColors of(const Look& look);
};

namespace HelpStyle {

inline constexpr int sidebarWidth = 312;
inline constexpr int measure = 560;     ///< the widest column of text, about 70 characters
inline constexpr int pageMargin = 40;   ///< minimum beside the text
inline constexpr int spacerHeight = 10; ///< of an empty line
inline constexpr int quoteBarWidth = 3;
inline constexpr int chipPadding = 4; ///< beside the text of a piece of code

QFont textFont();
QFont titleFont();
QFont headingFont();
QFont tableFont();
QFont codeFont(const QFont& within);
QFont listFont();

/// The style sheet of the window and its scroll bars.
QString sheet(const HelpColors& colors);

} // namespace HelpStyle

} // namespace tessik
