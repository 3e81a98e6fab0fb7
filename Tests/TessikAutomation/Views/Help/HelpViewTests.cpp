#include "TessikAutomation/Views/Help/HelpPage.h"
#include "TessikAutomation/Views/Help/HelpView.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextTable>
#include <gtest/gtest.h>

namespace tessik {

namespace {

struct HelpViewTest : testing::Test {
    HelpViewTest() {
        view.resize(900, 640);
        view.show();
        QTest::qWait(0);
    }
    template <typename Widget>
    Widget& part(const char* name) {
        return *view.findChild<Widget*>(QString::fromLatin1(name));
    }
    void typeQuery(const char* query) {
        QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(&search, QString::fromLatin1(query));
    }
    QString text() const { return page.toPlainText(); }

    HelpView view{Look::of(ColorScheme::dark)};
    QLineEdit& search = part<QLineEdit>("search");
    QListWidget& list = part<QListWidget>("topics");
    HelpPage& page = *static_cast<HelpPage*>(&part<QTextBrowser>("page"));
};

} // namespace

TEST_F(HelpViewTest, OpensAtTheFirstChapterAndFollowsTheList) {
    EXPECT_EQ(view.shownTitle(), QStringLiteral("Overview"));
    EXPECT_EQ(list.count(), 18);
    page.verticalScrollBar()->setValue(200);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(view.shownTitle(), QStringLiteral("What You Need"));
    EXPECT_TRUE(text().startsWith(QStringLiteral("What You Need\n")));
    EXPECT_EQ(page.verticalScrollBar()->value(), 0);
}

TEST_F(HelpViewTest, ASearchHidesAndBringsBackTheSelection) {
    view.showTopic(QStringLiteral("The Master Section"));
    typeQuery("oscillator");
    EXPECT_EQ(view.shownTitle(), QStringLiteral("The Master Section")); // still visible
    search.clear();
    typeQuery("modprobe");
    EXPECT_EQ(view.visibleTitles(), QStringList{QStringLiteral("Troubleshooting")});
    EXPECT_EQ(view.shownTitle(), QStringLiteral("Troubleshooting"));
    EXPECT_FALSE(page.extraSelections().isEmpty());
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(view.shownTitle(), QStringLiteral("The Master Section"));
    EXPECT_TRUE(page.extraSelections().isEmpty());
    EXPECT_TRUE(view.isVisible());
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
}

TEST_F(HelpViewTest, SaysSoWhereNothingIsFound) {
    typeQuery("xyzzy");
    EXPECT_TRUE(view.shownTitle().isEmpty());
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(list.count(), 0);
    QTest::keyClick(&search, Qt::Key_Down); // nothing to go to
    QTest::keyClick(&search, Qt::Key_Return);
    view.showTopic(QStringLiteral("Troubleshooting")); // ends the search that hides it
    EXPECT_EQ(view.shownTitle(), QStringLiteral("Troubleshooting"));
    EXPECT_TRUE(page.isVisible());
    EXPECT_TRUE(search.text().isEmpty());
    view.showTopic(QStringLiteral("No such chapter"));
    EXPECT_EQ(view.shownTitle(), QStringLiteral("Troubleshooting"));
}

TEST_F(HelpViewTest, TheSearchFieldMovesThroughChaptersAndMatches) {
    typeQuery("--rig");
    const QStringList found = view.visibleTitles();
    ASSERT_GE(found.size(), 3);
    QTest::keyClick(&search, Qt::Key_Down);
    EXPECT_EQ(view.shownTitle(), found[1]);
    QTest::keyClick(&search, Qt::Key_PageUp);
    EXPECT_EQ(view.shownTitle(), found[0]);
    // Code is shown with hyphens that do not break; it is found, and copied, with those that are typed.
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_TRUE(page.textCursor().hasSelection());
    page.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("--rig"));
}

TEST_F(HelpViewTest, WordsAreMarkedTogetherWhereTheyStandSoElseEach) {
    view.showTopic(QStringLiteral("Nulling Faders (NULL)"));
    const auto marked = [this](const char* query) {
        search.clear();
        typeQuery(query);
        QStringList texts;
        for (const QTextEdit::ExtraSelection& mark : page.extraSelections())
            texts << mark.cursor.selectedText();
        texts.removeDuplicates();
        return texts;
    };
    EXPECT_EQ(marked("up  arrow"), QStringList{QStringLiteral("up arrow")});
    const QStringList apart = marked("decibel pull");
    EXPECT_TRUE(apart.contains(QStringLiteral("decibel")) && apart.contains(QStringLiteral("pull")));
    EXPECT_TRUE(marked(" ").isEmpty());
}

TEST_F(HelpViewTest, LinksLeadToTheirChapters) {
    const QTextDocument& document = *page.document();
    const QTextCursor link = document.find(QStringLiteral("Setting Up MIDI"));
    ASSERT_FALSE(link.isNull());
    ASSERT_TRUE(link.charFormat().isAnchor());
    Q_EMIT page.anchorClicked(link.charFormat().anchorHref());
    EXPECT_EQ(view.shownTitle(), QStringLiteral("Setting Up MIDI"));
}

TEST_F(HelpViewTest, KeepsItsPlaceWhenTheThemeChanges) {
    page.verticalScrollBar()->setValue(150);
    const QImage dark = view.grab().toImage();
    view.setLook(Look::of(ColorScheme::light));
    EXPECT_EQ(page.verticalScrollBar()->value(), 150);
    const QPoint inThePage(view.width() - 60, view.height() - 4);
    EXPECT_GT(view.grab().toImage().pixelColor(inThePage).lightness(), 200);
    EXPECT_LT(dark.pixelColor(inThePage).lightness(), 60);
}

/// No block may be wider than its column, or text is cut off at the right.
TEST_F(HelpViewTest, EveryChapterFitsItsColumn) {
    for (const int width : {640, 1600}) {
        view.resize(width, 640);
        for (const HelpTopic& topic : manual()) {
            view.showTopic(topic.title);
            const QTextFrameFormat frame = page.document()->rootFrame()->frameFormat();
            const double right = page.viewport()->width() - frame.rightMargin() + 0.5;
            for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next()) {
                const QRectF box = page.document()->documentLayout()->blockBoundingRect(block);
                EXPECT_LE(box.right(), right)
                    << width << ' ' << qPrintable(topic.title) << ": " << qPrintable(block.text());
            }
        }
    }
}

TEST(HelpPage, DrawsEveryForm) {
    HelpPage page(HelpColors::of(Look::of(ColorScheme::light)), {QStringLiteral("Other")});
    page.resize(600, 400);
    page.show({QStringLiteral("Title"), QStringLiteral("para\n- dot\n7. seven\n> said\n### Head\n| a | b |\n| - | - "
                                                       "|\n| 1 |\nend *Other* *else*")});
    const QTextDocument& document = *page.document();
    EXPECT_EQ(page.toPlainText(),
              QStringLiteral("Title\npara\n•\tdot\n7.\tseven\nsaid\nHead\na\nb\n1\n\nend Other else"));
    const QTextCursor cell = document.find(QStringLiteral("1"));
    const QTextTable* const table = QTextCursor(cell).currentTable();
    ASSERT_TRUE(table);
    EXPECT_EQ(table->rows(), 2);
    EXPECT_EQ(table->columns(), 2);
    EXPECT_TRUE(document.find(QStringLiteral("Other")).charFormat().isAnchor());
    EXPECT_FALSE(document.find(QStringLiteral("else")).charFormat().isAnchor());
    EXPECT_TRUE(document.find(QStringLiteral("else")).charFormat().fontItalic());
}

} // namespace tessik
