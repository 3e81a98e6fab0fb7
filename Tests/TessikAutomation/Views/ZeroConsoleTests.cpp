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

TEST_F(ZeroConsoleTest, EachTierAsksAndThenDoesWhatItSays) {
    const std::tuple<ResetTier, bool, bool> tiers[]{{ResetTier::channelsOnly, false, false},
                                                    {ResetTier::channelsAndMaster, true, false},
                                                    {ResetTier::channelsAndMasterSendToConsole, true, true}};
    for (const auto& [tier, zeroesMaster, sends] : tiers) {
        showFader(model, ChannelKind::input(3), 90);
        const QString title = texts(tier).menuTitle;
        const QList<QAction*> actions = menu->actions();
        const auto action =
            std::find_if(actions.begin(), actions.end(), [&](const QAction* one) { return one->text() == title; });
        ASSERT_NE(action, actions.end());
        (*action)->trigger();
        answer("Cancel");
        EXPECT_FALSE(isZero());
        (*action)->trigger();
        const QString text = menu->confirmation()->informativeText();
        EXPECT_EQ(text.contains(QStringLiteral("\nSent to the desk now\n")), sends);
        answer("Zero It");
        EXPECT_TRUE(isZero()) << qPrintable(title);
        EXPECT_EQ(master.settings.value() == MasterSectionSettings(), zeroesMaster) << qPrintable(title);
        EXPECT_FALSE(window->history().canUndo()) << "it cannot be undone";
        for (int i = 0; i < 200; ++i) {
            clock.advance(std::chrono::milliseconds(5));
            output.pump();
        }
        EXPECT_EQ(received.empty(), !sends) << qPrintable(title);
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
