#pragma once

#include "TessikAutomation/Help/HelpMarkdown.h"
#include "TessikAutomation/Views/Help/HelpStyle.h"

#include <QTextCursor>

class QTextTable;

namespace tessik {

/// Writes blocks of the manual into a text document, each kind in its own style.
class HelpTypesetter {
public:
    /// What the page itself draws behind the text, as a property of the block or character format.
    enum Property : int { quoteProperty = QTextFormat::UserProperty + 1, codeProperty };

    /// Replaces each hyphen in code, so that no line breaks inside an option's name.
    static constexpr QChar unbrokenHyphen{0x2011};

    /// Text in italics that names one of `chapters` becomes a link to it.
    HelpTypesetter(QTextDocument& document, const HelpColors& colors, const QStringList& chapters);

    void title(const QString& text);
    void block(const HelpMarkdown::Block& block);

private:
    struct Form {
        QTextBlockFormat block;
        QTextCharFormat text;
    };

    void draw(const HelpMarkdown::Heading& heading);
    void draw(const HelpMarkdown::Paragraph& paragraph);
    void draw(const HelpMarkdown::Bullet& bullet);
    void draw(const HelpMarkdown::Step& step);
    void draw(const HelpMarkdown::Quote& quote);
    void draw(const HelpMarkdown::Table& table);
    void draw(const HelpMarkdown::Spacer& spacer);

    Form textForm() const;
    void begin(QTextBlockFormat format);
    void drawItem(const QString& mark, const QString& text, bool markIsStrong);
    void write(const QString& text, const QTextCharFormat& format);
    void writeCode(const QString& text, QTextCharFormat format);

    QTextCursor _cursor;
    const HelpColors& _colors;
    const QStringList& _chapters;
    bool _reuseBlock = true;      ///< the block at the cursor is empty and waits for text
    QTextTable* _above = nullptr; ///< the table directly above, which takes over the margin of what follows
    int _gap = 0;                 ///< of the empty lines since the last block
};

} // namespace tessik
