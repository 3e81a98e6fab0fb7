#include "TessikAutomation/Help/HelpMarkdown.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace tessik::HelpMarkdown {

namespace {

constexpr QLatin1Char bar('|');

QStringList cells(const QString& line) {
    QStringList cells = line.split(bar);
    for (QString& cell : cells)
        cell = cell.trimmed();
    if (cells.first().isEmpty()) cells.removeFirst();
    if (!cells.isEmpty() && cells.last().isEmpty()) cells.removeLast();
    return cells;
}

bool isDivider(const QStringList& cells) {
    return std::ranges::all_of(cells, [](const QString& cell) {
        return std::ranges::all_of(cell, [](QChar c) { return c == QLatin1Char('-') || c == QLatin1Char(':'); });
    });
}

Block lineBlock(const QString& line) {
    if (line.isEmpty()) return Spacer{};
    if (line.startsWith(QLatin1String("### "))) return Heading{line.mid(4)};
    if (line.startsWith(QLatin1String("> "))) return Quote{line.mid(2)};
    if (line.startsWith(QLatin1String("- "))) return Bullet{line.mid(2)};
    static const QRegularExpression step(QStringLiteral("^([0-9]+)\\. "));
    if (const auto match = step.match(line); match.hasMatch())
        return Step{match.captured(1), line.mid(match.capturedLength())};
    return Paragraph{line};
}

} // namespace

std::vector<Block> blocks(const QString& text) {
    std::vector<Block> blocks;
    bool inTable = false;
    for (const QString& source : text.split(QLatin1Char('\n'))) {
        const QString line = source.trimmed();
        const bool isTable = line.startsWith(bar);
        if (!isTable) {
            blocks.push_back(lineBlock(line));
        } else {
            if (!inTable) blocks.emplace_back(Table{});
            if (QStringList row = cells(line); !isDivider(row))
                std::get<Table>(blocks.back()).rows.push_back(std::move(row));
        }
        inTable = isTable;
    }
    return blocks;
}

std::vector<Run> inlineRuns(const QString& text) {
    // Qt parses whole documents. A leading comma keeps text that looks like a list or heading from becoming one and,
    // being punctuation, lets emphasis open right after it.
    constexpr QLatin1Char guard(',');
    QTextDocument document;
    document.setMarkdown(guard + text, QTextDocument::MarkdownFeatures(QTextDocument::MarkdownNoHTML));
    const QTextBlock block = document.firstBlock();
    if (document.blockCount() != 1 || !block.text().startsWith(guard)) return {{text}};

    std::vector<Run> runs;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextCharFormat format = it.fragment().charFormat();
        QString run = it.fragment().text();
        if (runs.empty() && it == block.begin()) run.remove(0, 1);
        if (!run.isEmpty())
            runs.push_back({run, format.fontWeight() > QFont::Normal, format.fontItalic(), format.fontFixedPitch()});
    }
    return runs;
}

QString plainText(const QString& text) {
    QString plain;
    for (const Run& run : inlineRuns(text))
        plain += run.text;
    return plain;
}

} // namespace tessik::HelpMarkdown
