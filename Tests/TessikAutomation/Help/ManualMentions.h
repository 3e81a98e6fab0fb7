#pragma once

#include "TessikAutomation/Help/HelpMarkdown.h"
#include "TessikAutomation/Help/HelpTopic.h"

#include <QStringList>

#include <functional>

namespace tessik {

/// What the manual tells its reader to look for, by how the manual sets it: names of buttons, menus and controls in
/// bold, texts that the program shows (and other chapters) in italics, keys and what is typed as code. Each once.
struct ManualMentions {
    QStringList names;
    QStringList texts;
    QStringList code;
};

/// Calls `visit` with every text of a block and of every cell of a table.
inline void visitTexts(const HelpMarkdown::Block& block, const std::function<void(const QString&)>& visit) {
    if (const auto* const table = std::get_if<HelpMarkdown::Table>(&block)) {
        for (const QStringList& row : table->rows)
            for (const QString& cell : row)
                visit(cell);
        return;
    }
    std::visit(
        [&](const auto& form) {
            if constexpr (requires { form.text; }) visit(form.text);
        },
        block);
}

inline ManualMentions manualMentions(const HelpTopics& topics) {
    ManualMentions mentions;
    const auto add = [](QStringList& list, const QString& text) {
        if (!list.contains(text)) list.push_back(text);
    };
    for (const HelpTopic& topic : topics)
        for (const HelpMarkdown::Block& block : HelpMarkdown::blocks(topic.body))
            visitTexts(block, [&](const QString& text) {
                for (const HelpMarkdown::Run& run : HelpMarkdown::inlineRuns(text)) {
                    if (run.code) add(mentions.code, run.text);
                    if (run.bold) add(mentions.names, run.text);
                    if (run.italic) add(mentions.texts, run.text);
                }
            });
    return mentions;
}

/// The keys of the chapter of shortcuts with what each does, in its order. A key of two contexts comes twice.
inline std::vector<std::pair<QString, QString>> shortcutsMentioned(const HelpTopic& shortcuts) {
    std::vector<std::pair<QString, QString>> keys;
    for (const HelpMarkdown::Block& block : HelpMarkdown::blocks(shortcuts.body))
        if (const auto* const table = std::get_if<HelpMarkdown::Table>(&block))
            for (std::size_t row = 1; row < table->rows.size(); ++row)
                keys.emplace_back(HelpMarkdown::plainText(table->rows[row].value(0)),
                                  HelpMarkdown::plainText(table->rows[row].value(1)));
    return keys;
}

} // namespace tessik
