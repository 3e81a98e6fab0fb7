#include "TessikAutomation/Application/CommandLine.h"
#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Help/HelpMarkdown.h"
#include "TessikAutomation/Help/HelpTopic.h"
#include "TessikAutomation/ManualSettings/Travel.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/RigCommands.h"

#include <QDirIterator>
#include <QKeySequence>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>

namespace tessik {

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

QStringList titles(const HelpTopics& topics) {
    QStringList titles;
    for (const HelpTopic& topic : topics)
        titles.push_back(topic.title);
    return titles;
}

/// Calls `visit` with every text of a block and of every cell of a table.
void visitTexts(const HelpMarkdown::Block& block, const std::function<void(const QString&)>& visit) {
    std::visit(
        [&](const auto& form) {
            if constexpr (requires { form.text; }) visit(form.text);
            if constexpr (requires { form.rows; })
                for (const QStringList& row : form.rows)
                    std::ranges::for_each(row, visit);
        },
        block);
}

/// What the manual tells its reader to look for, by how the manual sets it.
struct Mentions {
    Mentions() {
        for (const HelpTopic& topic : manual())
            for (const HelpMarkdown::Block& block : HelpMarkdown::blocks(topic.body)) {
                visitTexts(block, [&](const QString& text) {
                    for (const HelpMarkdown::Run& run : HelpMarkdown::inlineRuns(text))
                        if (run.code)
                            code << run.text;
                        else if (run.bold || run.italic)
                            texts << run.text;
                });
                const auto* const table = std::get_if<HelpMarkdown::Table>(&block);
                if (table && topic.title == u("Keyboard Shortcuts"))
                    for (std::size_t row = 1; row < table->rows.size(); ++row)
                        shortcuts << HelpMarkdown::plainText(table->rows[row].value(0));
            }
    }
    QStringList texts;     ///< names of controls in bold, texts of the program and chapters in italics
    QStringList code;      ///< keys, and what is typed
    QStringList shortcuts; ///< the keys listed in their chapter
};

/// What the program can say and obey, from its sources.
class Program {
public:
    Program() {
        static const QRegularExpression comment(u("(^|\\s)//[^\\n]*"));
        static const QRegularExpression seam(u("\"\\s*\\n\\s*\""));
        static const QRegularExpression literal(u("\"((?:[^\"\\\\\\n]|\\\\.)*)\""));
        QDirIterator files(u(TESSIK_TEST_DATA "/../../Sources"), {u("*.h"), u("*.cpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.fileName().contains(u("/Tour/"))) continue; // speaks of the windows, not in them
            if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error(qPrintable(file.fileName()));
            const QString source = QString::fromUtf8(file.readAll()).remove(comment).remove(seam);
            for (const QRegularExpressionMatch& match : literal.globalMatch(source))
                _literals << match.captured(1).remove(QLatin1Char('&'));
            _sources += source;
        }
        _texts = _literals.join(QLatin1Char('\n'));
    }
    /// Whether one of its texts has that as whole words, or is that but for what it fills in.
    bool says(const QString& text) const {
        const QRegularExpression words(u("(^|\\s)%1($|[\\s.,:])").arg(QRegularExpression::escape(text)));
        if (words.match(_texts).hasMatch()) return true;
        return std::ranges::any_of(_literals, [&](const QString& pattern) {
            const qsizetype open = pattern.indexOf(u("%1"));
            return open >= 0 && pattern.size() >= 6 && text.startsWith(pattern.left(open)) &&
                   text.endsWith(pattern.mid(open + 2));
        });
    }
    bool obeysKey(QString key) const {
        if (key == u("Ctrl+F")) return _sources.contains(u("QKeySequence::Find"));
        if (_literals.contains(key)) return true;
        if (key.contains(u("Ctrl+"))) return false;
        static const std::map<QString, QString> names{
            {u("←"), u("Left")}, {u("→"), u("Right")}, {u("↑"), u("Up")},      {u("↓"), u("Down")},
            {u("+"), u("Plus")}, {u("-"), u("Minus")}, {u("Esc"), u("Escape")}};
        key.remove(u("Shift+")).remove(QLatin1Char(' '));
        const auto named = names.find(key);
        const QRegularExpression code(u("Qt::Key_%1\\b").arg(named == names.end() ? key : named->second));
        return code.match(_sources).hasMatch();
    }

private:
    QString _sources;
    QStringList _literals;
    QString _texts;
};

} // namespace

/// Marks that no form of the renderer took up would stand on the page as they are.
TEST(Manual, ParsesIntoTheFormsMeant) {
    static const QRegularExpression strayMark(u("[*`|]"));
    static const QRegularExpression strayForm(u("^(#|>|-|\\+|[0-9]+[.)])"));
    for (const HelpTopic& topic : manual()) {
        SCOPED_TRACE(qPrintable(topic.title));
        int step = 0;
        for (const HelpMarkdown::Block& block : HelpMarkdown::blocks(topic.body)) {
            visitTexts(block, [&](const QString& text) {
                EXPECT_FALSE(text.isEmpty());
                for (const HelpMarkdown::Run& run : HelpMarkdown::inlineRuns(text))
                    EXPECT_TRUE(run.code || !strayMark.match(run.text).hasMatch()) << qPrintable(text);
            });
            const auto* const numbered = std::get_if<HelpMarkdown::Step>(&block);
            step = numbered ? step + 1 : 0;
            EXPECT_EQ(numbered ? numbered->number.toInt() : 0, step);
            if (const auto* const paragraph = std::get_if<HelpMarkdown::Paragraph>(&block)) {
                EXPECT_FALSE(strayForm.match(paragraph->text).hasMatch()) << qPrintable(paragraph->text);
            }
            if (const auto* const table = std::get_if<HelpMarkdown::Table>(&block)) {
                for (const QStringList& row : table->rows)
                    EXPECT_EQ(row.size(), table->rows.front().size()) << qPrintable(row.join(QLatin1Char('|')));
            }
        }
    }
}

TEST(Manual, AllThatItNamesIsInTheProgram) {
    const Mentions mentions;
    const Program program;
    const QStringList elsewhere = titles(manual()) << u("TessikAutomation");
    for (const QString& text : mentions.texts)
        EXPECT_TRUE(elsewhere.contains(text) || program.says(text)) << qPrintable(text);
    EXPECT_FALSE(program.says(u("Save Everything")) || program.says(u("out of paper")));

    EXPECT_GE(mentions.shortcuts.size(), 25);
    for (const QString& key : mentions.shortcuts)
        EXPECT_TRUE(program.obeysKey(key)) << qPrintable(key);
    EXPECT_FALSE(program.obeysKey(u("Ctrl+J")) || program.obeysKey(u("J")));

    const QString usage = CommandLine::parse({u("tessik-automation"), u("--help")}).ending->text;
    VirtualMIDIService service;
    SimulatedConsole desk(service);
    SimulatedRecorder recorder(service);
    RigCommands rig(desk, recorder);
    static const QRegularExpression key(
        u("^(Ctrl.|Shift.|Alt|F[0-9]|Tab|Space|Return|Enter|Home|End|Page|Esc|[←→↑↓])"));
    static const QRegularExpression option(u("tessik-automation.* (--[a-z-]+)"));
    static const QRegularExpression command(u("^(fader|scene) "));
    static const QRegularExpression value(u("^(L )?[0-9.]+k?$"));
    for (const QString& code : mentions.code) {
        if (key.match(code).hasMatch()) {
            EXPECT_TRUE(mentions.shortcuts.contains(code)) << qPrintable(code);
        } else if (const auto match = option.match(code); match.hasMatch()) {
            EXPECT_TRUE(usage.contains(match.captured(1))) << qPrintable(code);
        } else if (command.match(code).hasMatch()) {
            EXPECT_EQ(rig.obey(code), u("ok")) << qPrintable(code);
        } else if (value.match(code).hasMatch() && !mentions.shortcuts.contains(code)) {
            EXPECT_TRUE(ValueFormat::frequency.parse(code) || ValueFormat::pan.parse(code)) << qPrintable(code);
        }
    }
}

TEST(Manual, FindsWhatAReaderLooksFor) {
    const auto found = [](const char* query) { return titles(visibleTopics(manual(), u(query))); };
    EXPECT_EQ(found(" ").size(), 18);
    EXPECT_EQ(found("mmc"), found("MMC"));
    EXPECT_TRUE(found("mmc").contains(u("Transport and Timecode")));
    EXPECT_TRUE(found("TROUBLE").contains(u("Troubleshooting")));                    // in a title
    EXPECT_TRUE(found("click read or update").contains(u("Nulling Faders (NULL)"))); // across marks
    EXPECT_EQ(found("decibel  ARROWS nulling"),
              (QStringList{u("Channel Strips"), u("Nulling Faders (NULL)")})); // words far apart
    EXPECT_TRUE(found("arrows xyzzy").isEmpty());
    for (const char* const query : {"Ctrl+Shift+S", "--rig", "recovery", ".tessik~", "phantom", "Standard MIDI File"})
        EXPECT_FALSE(found(query).isEmpty()) << query;
}

TEST(Manual, EveryContextHasAChapter) {
    for (int i = 0; i <= static_cast<int>(HelpContext::problems); ++i)
        EXPECT_TRUE(titles(manual()).contains(chapterTitle(static_cast<HelpContext>(i)))) << i;
}

} // namespace tessik
