#include "ManualMentions.h"
#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Help/HelpTopic.h"
#include "TessikAutomation/Views/CommandLine.h"

#include <QKeySequence>
#include <QRegularExpression>
#include <QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

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

TEST(Manual, HasItsEighteenChaptersInOrder) {
    const QStringList expected = QStringLiteral("Overview\n"
                                                "What You Need\n"
                                                "Installing and First Launch\n"
                                                "Setting Up MIDI\n"
                                                "Sessions, Snapshots and Passes\n"
                                                "Getting Your Console State Into the App\n"
                                                "The Main Window\n"
                                                "Channel Strips\n"
                                                "The Master Section\n"
                                                "Scribble Strips and Channel Names\n"
                                                "Transport and Timecode\n"
                                                "Recording Automation (WRITE and UPDATE)\n"
                                                "Playing Back Automation (READ)\n"
                                                "Nulling Faders (NULL)\n"
                                                "Zeroing the Console\n"
                                                "Keyboard Shortcuts\n"
                                                "Troubleshooting\n"
                                                "Limitations and Known Issues")
                                     .split(QLatin1Char('\n'));
    EXPECT_EQ(titles(manual()), expected);
}

/// Marks that no form of the renderer took up would stand on the page as they are.
TEST(Manual, ParsesIntoTheFormsMeant) {
    static const QRegularExpression strayMark(QStringLiteral("[*`|]"));
    static const QRegularExpression strayForm(QStringLiteral("^(#|>|-|\\+|[0-9]+[.)])"));
    for (const HelpTopic& topic : manual()) {
        const std::vector<HelpMarkdown::Block> blocks = HelpMarkdown::blocks(topic.body);
        EXPECT_GE(blocks.size(), 8u) << qPrintable(topic.title);
        for (const HelpMarkdown::Block& block : blocks) {
            visitTexts(block, [&](const QString& text) {
                EXPECT_FALSE(text.isEmpty()) << qPrintable(topic.title);
                QString outsideCode;
                for (const HelpMarkdown::Run& run : HelpMarkdown::inlineRuns(text))
                    if (!run.code) outsideCode += run.text;
                EXPECT_FALSE(strayMark.match(outsideCode).hasMatch())
                    << qPrintable(topic.title) << ": " << qPrintable(text);
            });
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

TEST(Manual, NumbersItsStepsFromOne) {
    for (const HelpTopic& topic : manual()) {
        int last = 0;
        for (const HelpMarkdown::Block& block : HelpMarkdown::blocks(topic.body)) {
            const auto* const step = std::get_if<HelpMarkdown::Step>(&block);
            if (step) {
                EXPECT_EQ(step->number.toInt(), last + 1) << qPrintable(topic.title) << qPrintable(step->text);
            }
            last = step ? last + 1 : 0;
        }
    }
}

TEST(Manual, ShortcutsAreKeysAndEachStandsOnceInItsContext) {
    std::set<std::pair<QString, QString>> seen;
    for (const auto& [key, action] : shortcutsMentioned(chapter("Keyboard Shortcuts"))) {
        EXPECT_FALSE(action.isEmpty()) << qPrintable(key);
        EXPECT_TRUE(seen.emplace(key, action).second) << qPrintable(key);
        static const QStringList arrows{QStringLiteral("←"), QStringLiteral("→"), QStringLiteral("↑"),
                                        QStringLiteral("↓")};
        QString named = key;
        for (const QString& arrow : arrows)
            named.replace(arrow, QStringLiteral("Up"));
        const QKeySequence sequence(named, QKeySequence::PortableText);
        EXPECT_TRUE(sequence.count() == 1 && sequence[0].key() != Qt::Key_unknown) << qPrintable(key);
    }
    EXPECT_GE(seen.size(), 25u);
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

TEST(HelpContext, IsThatOfTheNearestPartAroundAWidget) {
    QWidget window;
    QWidget panel(&window);
    QWidget button(&panel);
    EXPECT_EQ(chapterTitle(nullptr), QStringLiteral("The Main Window"));
    EXPECT_EQ(chapterTitle(&button), QStringLiteral("The Main Window"));
    setHelpContext(window, HelpContext::settings);
    EXPECT_EQ(chapterTitle(&button), QStringLiteral("Setting Up MIDI"));
    setHelpContext(panel, HelpContext::transport);
    EXPECT_EQ(chapterTitle(&button), QStringLiteral("Transport and Timecode"));
    EXPECT_EQ(chapterTitle(&window), QStringLiteral("Setting Up MIDI"));
}

TEST(HelpTopics, TheShownOneIsTheSelectedElseTheFirst) {
    const HelpTopics topics{{QStringLiteral("A"), QStringLiteral("tape")},
                            {QStringLiteral("B"), QStringLiteral("Tape **desk**")},
                            {QStringLiteral("C"), QStringLiteral("rig")}};
    struct Case {
        const char* query;
        const char* selection;
        const char* shown; ///< null for none
    };
    for (const Case& c : {Case{"", "", "A"},
                          {"", "C", "C"},
                          {"", "gone", "A"},
                          {"TAPE", "C", "A"},
                          {"tape", "B", "B"},
                          {"tape desk", "A", "B"},
                          {"nothing", "A", nullptr}}) {
        const HelpTopics visible = visibleTopics(topics, QLatin1String(c.query));
        const HelpTopic* const shown = shownTopic(visible, QLatin1String(c.selection));
        EXPECT_EQ(shown ? shown->title : QString(), QLatin1String(c.shown)) << c.query << '/' << c.selection;
    }
}

} // namespace tessik
