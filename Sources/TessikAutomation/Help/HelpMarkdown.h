#pragma once

#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

/// The manual's small Markdown. It is line-based: every source line is its own block; only the lines of a table belong
/// together.
namespace tessik::HelpMarkdown {

struct Heading {
    QString text;
    bool operator==(const Heading&) const = default;
};
struct Paragraph {
    QString text;
    bool operator==(const Paragraph&) const = default;
};
struct Bullet {
    QString text;
    bool operator==(const Bullet&) const = default;
};
struct Step {
    QString number; ///< as written, without the full stop
    QString text;
    bool operator==(const Step&) const = default;
};
struct Quote {
    QString text;
    bool operator==(const Quote&) const = default;
};
struct Table {
    std::vector<QStringList> rows; ///< the header row first, without the divider
    bool operator==(const Table&) const = default;
};
struct Spacer {
    bool operator==(const Spacer&) const = default;
};

using Block = std::variant<Heading, Paragraph, Bullet, Step, Quote, Table, Spacer>;

std::vector<Block> blocks(const QString& text);

/// A stretch of text in one style.
struct Run {
    QString text;
    bool bold = false;
    bool italic = false;
    bool code = false;
    bool operator==(const Run&) const = default;
};

/// The text of one block, parsed as inline Markdown; unstyled where it cannot be parsed.
std::vector<Run> inlineRuns(const QString& text);
/// The text as the reader sees it.
QString plainText(const QString& text);

} // namespace tessik::HelpMarkdown
