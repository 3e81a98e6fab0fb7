#include "TessikAutomation/Views/Help/HelpTypesetter.h"

#include <QTextDocument>
#include <QTextTable>

#include <algorithm>

namespace tessik {

namespace {

constexpr double leading = 134;  ///< line height in percent
constexpr int itemIndent = 26;   ///< from the mark of a list item to its text
constexpr int quotePadding = 18; ///< from the edge of a quote to its text
constexpr int cellPadding = 8;

QTextCharFormat charFormat(const QFont& font, const QColor& color) {
    QTextCharFormat format;
    format.setFont(font);
    format.setForeground(color);
    return format;
}

/// Leaves room after it for the edge of a chip.
QTextCharFormat spaced(QTextCharFormat format) {
    format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
    format.setFontLetterSpacing(HelpStyle::chipPadding);
    return format;
}

} // namespace

HelpTypesetter::HelpTypesetter(QTextDocument& document, const HelpColors& colors, const QStringList& chapters)
    : _cursor(&document), _colors(colors), _chapters(chapters) {}

void HelpTypesetter::title(const QString& text) {
    QTextBlockFormat format;
    format.setHeadingLevel(1);
    begin(format);
    _cursor.insertText(text, charFormat(HelpStyle::titleFont(), _colors.strongText));
    _gap = 16;
}

void HelpTypesetter::block(const HelpMarkdown::Block& block) {
    std::visit([this](const auto& form) { draw(form); }, block);
}

HelpTypesetter::Form HelpTypesetter::textForm() const {
    Form form{{}, charFormat(HelpStyle::textFont(), _colors.text)};
    form.block.setLineHeight(leading, QTextBlockFormat::ProportionalHeight);
    return form;
}

/// Starts a block below the existing text and any empty lines since.
void HelpTypesetter::begin(QTextBlockFormat format) {
    format.setTopMargin(format.topMargin() + _gap);
    _gap = 0;
    if (_above) { // Qt ignores the margin of what follows a table
        QTextTableFormat table = _above->format();
        table.setBottomMargin(format.topMargin());
        _above->setFormat(table);
        _above = nullptr;
    }
    if (_reuseBlock)
        _cursor.setBlockFormat(format);
    else
        _cursor.insertBlock(format);
    _reuseBlock = false;
}

void HelpTypesetter::write(const QString& text, const QTextCharFormat& format) {
    const std::vector<HelpMarkdown::Run> runs = HelpMarkdown::inlineRuns(text);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const HelpMarkdown::Run& run = runs[i];
        if (run.code) {
            writeCode(run.text, format);
            continue;
        }
        QTextCharFormat styled = format;
        if (run.bold) {
            styled.setFontWeight(QFont::DemiBold);
            styled.setForeground(_colors.strongText);
        }
        if (run.italic && _chapters.contains(run.text)) {
            styled.setAnchor(true);
            styled.setAnchorHref(QLatin1Char('#') + run.text);
            styled.setForeground(_colors.accent);
        } else if (run.italic) {
            styled.setFontItalic(true);
        }
        const bool codeFollows = i + 1 < runs.size() && runs[i + 1].code;
        _cursor.insertText(codeFollows ? run.text.chopped(1) : run.text, styled);
        if (codeFollows) _cursor.insertText(run.text.right(1), spaced(styled));
    }
}

void HelpTypesetter::writeCode(const QString& text, QTextCharFormat format) {
    format.setFont(HelpStyle::codeFont(format.font()));
    format.setForeground(_colors.strongText);
    format.setProperty(codeProperty, true);
    const QString shown = QString(text).replace(QLatin1Char('-'), unbrokenHyphen);
    _cursor.insertText(shown.chopped(1), format);
    _cursor.insertText(shown.right(1), spaced(format));
}

void HelpTypesetter::draw(const HelpMarkdown::Heading& heading) {
    QTextBlockFormat format;
    format.setHeadingLevel(3);
    format.setTopMargin(18);
    begin(format);
    write(heading.text, charFormat(HelpStyle::headingFont(), _colors.strongText));
}

void HelpTypesetter::draw(const HelpMarkdown::Paragraph& paragraph) {
    const Form form = textForm();
    begin(form.block);
    write(paragraph.text, form.text);
}

void HelpTypesetter::draw(const HelpMarkdown::Bullet& bullet) { drawItem(QStringLiteral("•"), bullet.text, false); }

void HelpTypesetter::draw(const HelpMarkdown::Step& step) { drawItem(step.number + QLatin1Char('.'), step.text, true); }

void HelpTypesetter::drawItem(const QString& mark, const QString& text, bool markIsStrong) {
    Form form = textForm();
    form.block.setLeftMargin(itemIndent);
    form.block.setTextIndent(-itemIndent);
    form.block.setTabPositions({{itemIndent, QTextOption::LeftTab}});
    form.block.setTopMargin(4);
    begin(form.block);
    QTextCharFormat markFormat = form.text;
    markFormat.setForeground(markIsStrong ? _colors.accent : _colors.dimText);
    if (markIsStrong) markFormat.setFontWeight(QFont::DemiBold);
    _cursor.insertText(mark + QLatin1Char('\t'), markFormat);
    write(text, form.text);
}

void HelpTypesetter::draw(const HelpMarkdown::Quote& quote) {
    Form form = textForm();
    form.block.setLeftMargin(quotePadding);
    form.block.setRightMargin(quotePadding);
    form.block.setTopMargin(12);
    form.block.setBottomMargin(22);
    form.block.setProperty(quoteProperty, true);
    begin(form.block);
    write(quote.text, form.text);
}

void HelpTypesetter::draw(const HelpMarkdown::Table& table) {
    if (table.rows.empty()) return;
    qsizetype columns = 0;
    for (const QStringList& row : table.rows)
        columns = std::max(columns, row.size());
    if (columns == 0) return;

    QTextTableFormat format;
    format.setBorder(0);
    format.setCellSpacing(0);
    format.setCellPadding(0);
    format.setTopMargin(4 + _gap);
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    format.setHeaderRowCount(1);
    _gap = 0;

    QTextTable* const grid =
        _cursor.insertTable(static_cast<int>(table.rows.size()), static_cast<int>(columns), format);
    for (int row = 0; row < grid->rows(); ++row) {
        const bool isHeader = row == 0;
        QTextTableCellFormat cellFormat;
        cellFormat.setPadding(cellPadding);
        cellFormat.setBottomBorder(1);
        cellFormat.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        cellFormat.setBottomBorderBrush(isHeader ? _colors.dimText : _colors.divider);
        QTextCharFormat text = charFormat(HelpStyle::tableFont(), isHeader ? _colors.dimText : _colors.text);
        if (isHeader) text.setFontWeight(QFont::Medium);
        const QStringList& cells = table.rows[static_cast<std::size_t>(row)];
        for (int column = 0; column < grid->columns(); ++column) {
            QTextTableCell cell = grid->cellAt(row, column);
            cellFormat.setLeftPadding(column == 0 ? HelpStyle::chipPadding : 2 * cellPadding);
            // Code is set smaller: alone in its cell it would sit above the line of the other cells.
            const auto runs = HelpMarkdown::inlineRuns(cells.value(column));
            const bool isCode = runs.size() == 1 && runs.front().code;
            cellFormat.setVerticalAlignment(isCode ? QTextCharFormat::AlignMiddle : QTextCharFormat::AlignTop);
            cell.setFormat(cellFormat);
            if (column >= cells.size()) continue;
            _cursor = cell.firstCursorPosition();
            QTextBlockFormat block;
            block.setLineHeight(130, QTextBlockFormat::ProportionalHeight);
            _cursor.setBlockFormat(block);
            write(cells[column], text);
        }
    }
    _cursor = grid->lastCursorPosition();
    _cursor.movePosition(QTextCursor::NextBlock); // the block below a table
    _reuseBlock = true;
    _above = grid;
}

void HelpTypesetter::draw(const HelpMarkdown::Spacer&) { _gap += HelpStyle::spacerHeight; }

} // namespace tessik
