#include "ManualMentions.h"
#include "TessikAutomation/Application/CommandLine.h"
#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Help/HelpTopic.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>

namespace tessik {

namespace {

const HelpTopic& chapter(const char* title) {
    const auto found = std::ranges::find(manual(), QString::fromUtf8(title), &HelpTopic::title);
    if (found == manual().end()) throw std::runtime_error(title);
    return *found;
}

QStringList titles(const HelpTopics& topics) {
    QStringList titles;
    for (const HelpTopic& topic : topics)
        titles.push_back(topic.title);
    return titles;
}

} // namespace

/// Marks that no form of the renderer took up would stand on the page as they are.
TEST(Manual, ParsesIntoTheFormsMeant) {
    static const QRegularExpression strayMark(QStringLiteral("[*`|]"));
    static const QRegularExpression strayForm(QStringLiteral("^(#|>|-|\\+|[0-9]+[.)])"));
    for (const HelpTopic& topic : manual()) {
        const std::vector<HelpMarkdown::Block> blocks = HelpMarkdown::blocks(topic.body);
        EXPECT_GE(blocks.size(), 8u) << qPrintable(topic.title);
        int step = 0;
        for (const HelpMarkdown::Block& block : blocks) {
            visitTexts(block, [&](const QString& text) {
                EXPECT_FALSE(text.isEmpty()) << qPrintable(topic.title);
                QString outsideCode;
                for (const HelpMarkdown::Run& run : HelpMarkdown::inlineRuns(text))
                    if (!run.code) outsideCode += run.text;
                EXPECT_FALSE(strayMark.match(outsideCode).hasMatch())
                    << qPrintable(topic.title) << ": " << qPrintable(text);
            });
            const auto* const numbered = std::get_if<HelpMarkdown::Step>(&block);
            step = numbered ? step + 1 : 0;
            EXPECT_EQ(numbered ? numbered->number.toInt() : 0, step) << qPrintable(topic.title);
            if (const auto* const paragraph = std::get_if<HelpMarkdown::Paragraph>(&block)) {
                EXPECT_FALSE(strayForm.match(paragraph->text).hasMatch())
                    << qPrintable(topic.title) << ": " << qPrintable(paragraph->text);
            }
            if (const auto* const table = std::get_if<HelpMarkdown::Table>(&block)) {
                ASSERT_GE(table->rows.size(), 2u) << qPrintable(topic.title);
                for (const QStringList& row : table->rows)
                    EXPECT_EQ(row.size(), table->rows.front().size())
                        << qPrintable(topic.title) << ": " << qPrintable(row.join(QLatin1Char('|')));
            }
        }
    }
}

TEST(Manual, MentionsOnlyWhatTheCommandLineKnows) {
    const QString usage =
        CommandLine::parse({QStringLiteral("tessik-automation"), QStringLiteral("--help")}).ending->text;
    static const QRegularExpression option(QStringLiteral("tessik-automation.* (--[a-z-]+)"));
    int options = 0;
    for (const QString& code : manualMentions(manual()).code) {
        const auto match = option.match(code);
        if (!match.hasMatch()) continue;
        ++options;
        EXPECT_TRUE(usage.contains(match.captured(1))) << qPrintable(code);
    }
    EXPECT_GE(options, 6);
}

/// Keys that the chapters tell the reader to press are in the chapter of shortcuts too.
TEST(Manual, ChaptersAndShortcutsAgree) {
    QStringList listed;
    for (const auto& [key, action] : shortcutsMentioned(chapter("Keyboard Shortcuts")))
        listed.push_back(key);
    listed << QStringLiteral("Ctrl") << QStringLiteral("Shift"); // named alone, as held
    static const QRegularExpression key(
        QStringLiteral("^(Ctrl|Shift|Alt|F[0-9]|Tab|Space|Return|Enter|Home|End|Page|Esc|[←→↑↓])"));
    for (const QString& code : manualMentions(manual()).code)
        if (key.match(code).hasMatch()) {
            EXPECT_TRUE(listed.contains(code)) << qPrintable(code);
        }
}

TEST(Manual, FindsWhatAReaderLooksFor) {
    const auto found = [](const char* query) { return titles(visibleTopics(manual(), QString::fromUtf8(query))); };
    EXPECT_EQ(found("").size(), 18);
    EXPECT_EQ(found("mmc"), found("MMC"));
    EXPECT_TRUE(found("mmc").contains(QStringLiteral("Transport and Timecode")));
    EXPECT_TRUE(found("TROUBLE").contains(QStringLiteral("Troubleshooting")));                    // in a title
    EXPECT_TRUE(found("click read or update").contains(QStringLiteral("Nulling Faders (NULL)"))); // across marks
    EXPECT_TRUE(found("xyzzy").isEmpty());
    for (const char* const query : {"Ctrl+Shift+S", "--rig", "recovery", ".tessik~", "phantom", "Standard MIDI File"})
        EXPECT_FALSE(found(query).isEmpty()) << query;
}

TEST(Manual, EveryContextHasAChapter) {
    for (int i = 0; i <= static_cast<int>(HelpContext::problems); ++i)
        EXPECT_TRUE(titles(manual()).contains(chapterTitle(static_cast<HelpContext>(i)))) << i;
}

} // namespace tessik
