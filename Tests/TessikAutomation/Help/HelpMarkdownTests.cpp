#include "TessikAutomation/Help/HelpMarkdown.h"

#include <gtest/gtest.h>

namespace tessik::HelpMarkdown {

namespace {

using StyledRun = Run; // inside a test, Run is a function of the test

QString u(const char* text) { return QString::fromUtf8(text); }

Table table(std::vector<QStringList> rows) { return {std::move(rows)}; }

} // namespace

TEST(HelpMarkdown, BlocksOfWholeDocuments) {
    struct Case {
        const char* what;
        const char* text;
        std::vector<Block> blocks;
    };
    const Case cases[] = {
        {"nothing is one empty line", "", {Spacer{}}},
        {"lines are never joined", "a\nb\n\nc", {Paragraph{u("a")}, Paragraph{u("b")}, Spacer{}, Paragraph{u("c")}}},
        {"line ends and indents are trimmed",
         "  a \t\r\n\t- b\r\n   \r\n",
         {Paragraph{u("a")}, Bullet{u("b")}, Spacer{}, Spacer{}}},
        {"only headings of the third level",
         "### Three\n# One\n## Two\n#### Four\n###None",
         {Heading{u("Three")}, Paragraph{u("# One")}, Paragraph{u("## Two")}, Paragraph{u("#### Four")},
          Paragraph{u("###None")}}},
        {"bullets and quotes want their space",
         "- a\n-a\n-\n> q\n>q\n* star",
         {Bullet{u("a")}, Paragraph{u("-a")}, Paragraph{u("-")}, Quote{u("q")}, Paragraph{u(">q")},
          Paragraph{u("* star")}}},
        {"steps keep their numbers as written",
         "12. Twelve\n007. Bond\n12.Twelve\n1) One\n. None\n3.  Wide",
         {Step{u("12"), u("Twelve")}, Step{u("007"), u("Bond")}, Paragraph{u("12.Twelve")}, Paragraph{u("1) One")},
          Paragraph{u(". None")}, Step{u("3"), u(" Wide")}}},
        {"a table with header and divider",
         "| Key | Action |\n| --- | :-: |\n| `F1` | help |",
         {table({{u("Key"), u("Action")}, {u("`F1`"), u("help")}})}},
        {"a table ends at the first other line",
         "|a|b|\n|c|d|\nx\n|e|f|",
         {table({{u("a"), u("b")}, {u("c"), u("d")}}), Paragraph{u("x")}, table({{u("e"), u("f")}})}},
        {"empty cells inside stay, those at the ends go",
         "| | b |\n|a||c|\n| a | b",
         {table({{u(""), u("b")}, {u("a"), u(""), u("c")}, {u("a"), u("b")}})}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(blocks(u(c.text)), c.blocks) << c.what;
}

TEST(HelpMarkdown, InlineStyles) {
    struct Case {
        const char* text;
        std::vector<StyledRun> runs;
    };
    const StyledRun bold{.text = u("b"), .bold = true};
    const StyledRun italic{.text = u("i"), .italic = true};
    const Case cases[] = {
        {"", {}},
        {"plain", {{u("plain")}}},
        {"a **b** *i* `c`", {{u("a ")}, bold, {u(" ")}, italic, {u(" ")}, {.text = u("c"), .code = true}}},
        {"**b**", {bold}},
        {"_i_", {italic}},
        {"***x***", {{.text = u("x"), .bold = true, .italic = true}}},
        {"**(b)** and", {{.text = u("(b)"), .bold = true}, {u(" and")}}},
        {"`Ctrl+*` 2*3*4",
         {{.text = u("Ctrl+*"), .code = true}, {u(" 2")}, {.text = u("3"), .italic = true}, {u("4")}}},
        {"open ** end", {{u("open ** end")}}},
        {"snake_case_name", {{u("snake_case_name")}}},
        {"\\*as written\\*", {{u("*as written*")}}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(inlineRuns(u(c.text)), c.runs) << c.text;
}

TEST(HelpMarkdown, WhatBeginsLikeABlockStaysTextWithinOne) {
    for (const char* const text : {"# one", "## two", "- item", "* item", "+ item", "1. step", "1) step", "> quote",
                                   "| a | b |", "---", "===", "    indented", "```", "~~~ fence", "[a]: b",
                                   "<b>tag</b>", "<!-- comment", ", comma", "-∞ and U+2026 …"})
        EXPECT_EQ(plainText(u(text)).trimmed(), u(text).trimmed());
}

} // namespace tessik::HelpMarkdown
