#include "TessikAutomation/Help/HelpTopic.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

// Outside every namespace, as Qt requires; without this the linker leaves the chapters out of the program.
static void registerChapters() { Q_INIT_RESOURCE(manual); }

namespace tessik {

namespace {

/// A chapter's file: the title as a first-level heading on the first line, then the body.
HelpTopic chapter(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) qFatal("%s is not built in", qUtf8Printable(path));
    const QString text = QString::fromUtf8(file.readAll());
    const qsizetype end = text.indexOf(QLatin1Char('\n'));
    return {text.left(end).mid(2), text.mid(end + 1).trimmed()};
}

bool holdsAll(const HelpTopic& topic, const QStringList& words) {
    // Readers see no marks, so marks inside a word must not hide it.
    static const QRegularExpression marks(QStringLiteral("[*`]"));
    const QString text = topic.title + QLatin1Char('\n') + topic.body;
    return std::ranges::all_of(words, [&, seen = QString(text).remove(marks)](const QString& word) {
        return text.contains(word, Qt::CaseInsensitive) || seen.contains(word, Qt::CaseInsensitive);
    });
}

} // namespace

const HelpTopics& manual() {
    static const HelpTopics topics = [] {
        registerChapters();
        HelpTopics chapters;
        const QDir folder(QStringLiteral(":/help/Manual"));
        for (const QString& name : folder.entryList(QDir::Files, QDir::Name))
            chapters.push_back(chapter(folder.filePath(name)));
        return chapters;
    }();
    return topics;
}

QStringList searchWords(const QString& query) { return query.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts); }

HelpTopics visibleTopics(const HelpTopics& topics, const QString& query) {
    const QStringList words = searchWords(query);
    HelpTopics visible;
    std::ranges::copy_if(topics, std::back_inserter(visible),
                         [&](const HelpTopic& topic) { return holdsAll(topic, words); });
    return visible;
}

const HelpTopic* shownTopic(const HelpTopics& visible, const QString& selection) {
    if (visible.empty()) return nullptr;
    const auto selected = std::ranges::find(visible, selection, &HelpTopic::title);
    return selected != visible.end() ? &*selected : &visible.front();
}

} // namespace tessik
