#include "TessikAutomation/Application/ApplicationFixture.h"
#include "TessikAutomation/Views/Help/HelpMenu.h"
#include "TessikAutomation/Views/Welcome/WelcomeView.h"

#include <QLabel>
#include <QPushButton>

namespace tessik {
namespace {

struct WelcomeTest : ApplicationTest {
    WelcomeTest() {
        application.onRigWanted = [this] { ++rigWanted; };
        application.window.show();
    }
    WelcomeView* card() {
        application.welcome();
        for (auto* view : application.window.findChildren<WelcomeView*>())
            if (view->isVisible()) return view;
        return nullptr;
    }
    static void choose(WelcomeView& card, const char* text) {
        for (QPushButton* button : card.findChildren<QPushButton*>())
            if (button->text() == QLatin1String(text)) return button->click();
        ADD_FAILURE() << text;
    }

    int rigWanted = 0;
};

TEST_F(WelcomeTest, EachChoiceDoesWhatItSaysAndEndsIt) {
    choose(*card(), "Set up MIDI");
    ASSERT_TRUE(application.window.settingsView());
    EXPECT_FALSE(card()) << "it was dismissed";
    application.window.settingsView()->close();

    CleanSettings();
    choose(*card(), "Try it with the rig");
    EXPECT_EQ(rigWanted, 1);
    EXPECT_FALSE(card());

    CleanSettings();
    choose(*card(), "Read the manual");
    ASSERT_TRUE(application.window.findChild<HelpMenu*>()->view());
    EXPECT_FALSE(card());

    CleanSettings();
    QTest::keyClick(card()->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(card());
    EXPECT_EQ(rigWanted, 1);
}

TEST_F(WelcomeTest, IsForWhoHasNotBegunAndSaysWhereThereIsNoMIDI) {
    SavedSettings::setUniqueID(SavedSettings::Key::timecodeSourceID, 5);
    EXPECT_FALSE(card());
    CleanSettings();
    application.problems.noMIDI = QStringLiteral("no such file");
    WelcomeView* view = card();
    ASSERT_TRUE(view);
    bool isTold = false;
    for (const QLabel* label : view->findChildren<QLabel*>())
        isTold |= label->text().contains(QLatin1String("no such file"));
    EXPECT_TRUE(isTold);
    QTest::keyClick(view->windowHandle(), Qt::Key_Return);
    EXPECT_EQ(rigWanted, 1) << "what works here is what Return does";
}

} // namespace
} // namespace tessik
