#include "TessikAutomation/Views/Help/HelpPage.h"

#include "TessikAutomation/Views/Help/HelpTypesetter.h"

#include <QAbstractTextDocumentLayout>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextFrame>

#include <algorithm>
#include <vector>

namespace tessik {

namespace {

/// The origin of a block's layout, even in a table.
QPointF origin(const QTextBlock& block) {
    return block.document()->documentLayout()->blockBoundingRect(block).topLeft();
}

void drawQuote(QPainter& painter, const QTextBlock& block, const HelpColors& colors, QRectF column) {
    const QRectF text = block.layout()->boundingRect().translated(origin(block)).adjusted(0, -10, 0, 10);
    column.setTop(text.top());
    column.setBottom(text.bottom());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.quote);
    painter.drawRoundedRect(column, 4, 4);
    column.setWidth(HelpStyle::quoteBarWidth);
    painter.setBrush(colors.accent);
    painter.drawRoundedRect(column, 1.5, 1.5);
}

struct CodeRange {
    int begin, end;
    QFont font;
};

/// The pieces of code in a block, each whole however many formats it has.
std::vector<CodeRange> codeRanges(const QTextBlock& block) {
    std::vector<CodeRange> ranges;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (!fragment.charFormat().hasProperty(HelpTypesetter::codeProperty)) continue;
        const int begin = fragment.position() - block.position();
        const int end = begin + fragment.length();
        if (!ranges.empty() && ranges.back().end == begin)
            ranges.back().end = end;
        else
            ranges.push_back({begin, end, fragment.charFormat().font()});
    }
    return ranges;
}

/// A chip behind each line's share of a piece of code.
void drawCode(QPainter& painter, const QTextBlock& block, const CodeRange& code, const HelpColors& colors) {
    const QFontMetricsF metrics(code.font);
    painter.setPen(QPen(colors.chipEdge, 1));
    painter.setBrush(colors.chip);
    const QTextLayout& layout = *block.layout();
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const int begin = std::max(code.begin, line.textStart());
        int end = std::min(code.end, line.textStart() + line.textLength());
        const bool goesOn = end < code.end;
        while (goesOn && end > begin && block.text()[end - 1].isSpace())
            --end; // the space at which the line broke
        if (begin >= end) continue;
        const double left = line.cursorToX(begin) - HelpStyle::chipPadding;
        const double right = line.cursorToX(end) + (goesOn ? HelpStyle::chipPadding : 0);
        const QRectF chip(left, line.y() + line.ascent() - metrics.ascent() - 1, right - left, metrics.height() + 2);
        painter.drawRoundedRect(chip.translated(origin(block)), 4, 4);
    }
}

} // namespace

HelpPage::HelpPage(const HelpColors& colors, QStringList chapters, QWidget* parent)
    : QTextBrowser(parent), _chapters(std::move(chapters)), _colors(colors) {
    setOpenLinks(false);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { Q_EMIT chapterWanted(link.fragment()); });
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setUndoRedoEnabled(false);
    document()->setDocumentMargin(0);
}

void HelpPage::show(const HelpTopic& topic) {
    _topic = topic;
    typeset();
    setTextCursor(QTextCursor(document()));
    verticalScrollBar()->setValue(0);
}

void HelpPage::setColors(const HelpColors& colors) {
    _colors = colors;
    const int scrolledTo = verticalScrollBar()->value();
    typeset();
    verticalScrollBar()->setValue(scrolledTo);
}

void HelpPage::typeset() {
    document()->clear();
    HelpTypesetter typesetter(*document(), _colors, _chapters);
    typesetter.title(_topic.title);
    for (const HelpMarkdown::Block& block : HelpMarkdown::blocks(_topic.body))
        typesetter.block(block);
    setAccessibleName(_topic.title);
    fitColumn();
    markMatches(_query);
}

void HelpPage::fitColumn() {
    QTextFrame* const root = document()->rootFrame();
    QTextFrameFormat format = root->frameFormat();
    const double side = std::max<double>(HelpStyle::pageMargin, (viewport()->width() - HelpStyle::measure) / 2.0);
    format.setLeftMargin(side);
    format.setRightMargin(side);
    format.setTopMargin(8);
    format.setBottomMargin(2 * HelpStyle::pageMargin);
    root->setFrameFormat(format);
}

void HelpPage::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    fitColumn();
}

void HelpPage::markMatches(const QString& query) {
    _query = query;
    _match = matcher();
    QList<ExtraSelection> marks;
    QTextCharFormat format;
    format.setBackground(_colors.match);
    format.setForeground(_colors.strongText);
    for (QTextCursor at = nextMatch(QTextCursor(document())); !at.isNull(); at = nextMatch(at))
        marks.push_back({at, format});
    setExtraSelections(marks);
}

bool HelpPage::goToNextMatch() {
    QTextCursor match = nextMatch(textCursor());
    if (match.isNull()) match = nextMatch(QTextCursor(document()));
    if (match.isNull()) return false;
    setTextCursor(match);
    return true;
}

QRegularExpression HelpPage::matcher() const {
    static const QRegularExpression hyphen(QStringLiteral("\\\\?-")); // as `escape` may leave it
    QStringList words = searchWords(_query);
    for (QString& word : words)
        word = QRegularExpression::escape(word).replace(hyphen,
                                                        QStringLiteral("[-%1]").arg(HelpTypesetter::unbrokenHyphen));
    const auto anyCase = [](const QString& pattern) {
        return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
    };
    const QRegularExpression together = anyCase(words.join(QLatin1String("\\s+")));
    return document()->find(together).isNull() ? anyCase(words.join(QLatin1Char('|'))) : together;
}

QTextCursor HelpPage::nextMatch(const QTextCursor& after) const {
    return _match.pattern().isEmpty() ? QTextCursor() : document()->find(_match, after);
}

QMimeData* HelpPage::createMimeDataFromSelection() const {
    auto* const copied = new QMimeData; // plain: the page's colours are for the page only
    copied->setText(textCursor().selection().toPlainText().replace(HelpTypesetter::unbrokenHyphen, QLatin1Char('-')));
    return copied;
}

void HelpPage::paintEvent(QPaintEvent* event) {
    { // A text document knows neither a bar beside a paragraph nor a rounded background.
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
        const QTextFrameFormat frame = document()->rootFrame()->frameFormat();
        const QRectF column(frame.leftMargin(), 0, viewport()->width() - frame.leftMargin() - frame.rightMargin(), 0);
        for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
            if (block.blockFormat().hasProperty(HelpTypesetter::quoteProperty))
                drawQuote(painter, block, _colors, column);
            for (const CodeRange& code : codeRanges(block))
                drawCode(painter, block, code, _colors);
        }
    }
    QTextBrowser::paintEvent(event);
}

} // namespace tessik
