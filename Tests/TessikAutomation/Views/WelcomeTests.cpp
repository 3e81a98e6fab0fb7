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
    const auto dismissedBy = [this](const auto& choose) {
        CleanSettings();
        choose(*card());
        EXPECT_FALSE(card());
    };
    dismissedBy([](WelcomeView& view) { choose(view, "Set up MIDI"); });
    ASSERT_TRUE(application.window.settingsView());
    application.window.settingsView()->close();
    dismissedBy([](WelcomeView& view) { choose(view, "Read the manual"); });
    EXPECT_TRUE(application.window.findChild<HelpMenu*>()->view());
    dismissedBy([](WelcomeView& view) { QTest::keyClick(view.windowHandle(), Qt::Key_Escape); });
    EXPECT_EQ(rigWanted, 0);
    dismissedBy([](WelcomeView& view) { choose(view, "Try it with the rig"); });
    EXPECT_EQ(rigWanted, 1);
}

TEST_F(WelcomeTest, IsForWhoHasNotBegunAndSaysWhereThereIsNoMIDI) {
    SavedSettings::setUniqueID(SavedSettings::Key::timecodeSourceID, 5);
    EXPECT_FALSE(card());
    CleanSettings();
    application.problems.noMIDI = QStringLiteral("no such file");
    WelcomeView* view = card();
    ASSERT_TRUE(view);
    const auto labels = view->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(),
                            [](const QLabel* label) { return label->text().contains(QLatin1String("no such file")); }));
    QTest::keyClick(view->windowHandle(), Qt::Key_Return);
    EXPECT_EQ(rigWanted, 1) << "what works here is what Return does";
}

} // namespace
} // namespace tessik
