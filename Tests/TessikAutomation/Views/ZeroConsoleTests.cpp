#include "Support/Shown.h"
#include "TessikAutomation/Views/Window/ZeroConsoleMenu.h"
#include "TessikAutomation/Views/WindowFixture.h"

#include <QPushButton>

namespace tessik {
namespace {

struct ZeroConsoleTest : WindowTest {
    ZeroConsoleTest() {
        output.selectDestination(destinationID());
        show();
        menu = new ZeroConsoleMenu({model, output, manualSettings, labels, master}, window->history(), window.get());
        showFader(model, ChannelKind::input(3), 90);
        labels.update({QStringLiteral("Kick"), QStringLiteral("8A8A8A")}, QStringLiteral("input-3"));
        MasterSectionSettings room;
        room.crDim = true;
        master.setSettings(room);
        ControlHost& module = *window->desk().inputModule(3);
        module.setNumber(control(module, "solo"), 1);
    }
    void answer(const char* button) {
        for (QAbstractButton* one : menu->confirmation()->buttons())
            if (one->text().remove(QLatin1Char('&')) == QLatin1String(button)) {
                QTest::mouseClick(one, Qt::LeftButton);
                return;
            }
        ADD_FAILURE() << "no button " << button;
    }
    bool isZero() {
        return model.channelState(ChannelKind::input(3))->faderValue.value() == 0 &&
               labels.labelsByChannelID.value().isEmpty() &&
               manualSettings.settings(QStringLiteral("input-3")) == ManualChannelSettings();
    }

    ZeroConsoleMenu* menu = nullptr;
};

TEST_F(ZeroConsoleTest, CancelLeavesEverything) {
    for (QAction* action : menu->actions()) {
        if (action->isSeparator()) continue;
        action->trigger();
        ASSERT_TRUE(menu->confirmation());
        answer("Cancel");
    }
    EXPECT_FALSE(isZero());
    EXPECT_TRUE(window->history().canUndo());
    EXPECT_TRUE(received.empty());
}

TEST_F(ZeroConsoleTest, EachTierDoesWhatItSays) {
    const struct {
        const char *menuTitle, *dialogTitle, *messageBegins;
        bool master, sends;
    } rows[]{
        {"Zero Channels", "Zero all channel settings?", "Resets every channel's manual controls (trims", false, false},
        {"Zero Channels + Master Section", "Zero all channels and the Master Section?",
         "Same as above, plus resets the Master Section", true, false},
        {"Zero Channels + Master Section + Send to Console", "Zero the console?",
         "Same as above, and ALSO sends fader/mute/EQ resets out", true, true}};
    int tier = 0;
    for (const auto& row : rows) {
        showFader(model, ChannelKind::input(3), 90);
        QAction* action = nullptr;
        for (QAction* one : menu->actions())
            if (one->text() == QLatin1String(row.menuTitle)) action = one;
        ASSERT_TRUE(action) << row.menuTitle;
        action->trigger();
        EXPECT_EQ(menu->confirmation()->text(), QLatin1String(row.dialogTitle));
        const QString text = menu->confirmation()->informativeText();
        EXPECT_TRUE(text.startsWith(QLatin1String(row.messageBegins)));
        EXPECT_TRUE(text.contains(QStringLiteral("\n•  Scribble strips")));
        EXPECT_EQ(text.contains(QStringLiteral("\n•  Master Section")), row.master);
        EXPECT_EQ(text.contains(QStringLiteral("\nSent to the desk now\n")), row.sends);
        answer("Zero It");
        EXPECT_TRUE(isZero()) << tier;
        EXPECT_EQ(master.settings.value() == MasterSectionSettings(), row.master) << tier;
        EXPECT_FALSE(window->history().canUndo()) << "it cannot be undone";
        for (int i = 0; i < 200; ++i) {
            clock.advance(std::chrono::milliseconds(5));
            output.pump();
        }
        EXPECT_EQ(received.size(), row.sends ? 82u : 0u) << tier;
        ++tier;
    }
}

TEST_F(ZeroConsoleTest, TheDialogSaysWhenNothingCanBeSent) {
    output.selectDestination(std::nullopt);
    menu->ask(ResetTier::channelsAndMasterSendToConsole);
    const QString text = menu->confirmation()->informativeText();
    EXPECT_TRUE(text.contains(QLatin1String("nothing will be sent")) && !text.contains(QLatin1String("Sent to")));
}

} // namespace
} // namespace tessik
