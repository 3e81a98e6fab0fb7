#pragma once

#include <QStringList>

#include <vector>

namespace tessik {

/// One chapter of the manual, known by its title.
struct HelpTopic {
    QString title;
    QString body; ///< in the Markdown of HelpMarkdown

    bool operator==(const HelpTopic&) const = default;
};

using HelpTopics = std::vector<HelpTopic>;

/// The chapters built into the program, in the order of the manual.
const HelpTopics& manual();

/// The words of a search.
QStringList searchWords(const QString& query);
/// The topics that hold every word of `query` in their title or text, in any case and order; all of them for an empty
/// query. In the manual's order.
HelpTopics visibleTopics(const HelpTopics& topics, const QString& query);

/// The topic to show: the one titled `selection` if visible, else the first. Null if none is visible.
const HelpTopic* shownTopic(const HelpTopics& visible, const QString& selection);

} // namespace tessik
