// Hands on the controls that are only written down.
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/WindowFixture.h"

namespace tessik {
namespace {

using Settings = ManualChannelSettings;

struct ManualControlTest : WindowTest {
    ManualControlTest() {
        show({1600, 1100});
        manualSettings.onChange = [this] { ++changes; };
    }
    ControlHost& module(int number = 5) { return *window->desk().inputModule(number); }
    Settings settings(int number = 5) { return manualSettings.settings(ChannelKind::input(number).id()); }
    void drag(ControlHost& host, const char* id, QPoint by) {
        const QPoint from = centre(host, id);
        QTest::mousePress(&host, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 5; ++step)
            QTest::mouseMove(&host, from + by * step / 5);
        QTest::mouseRelease(&host, Qt::LeftButton, {}, from + by);
    }
    QUndoStack& history() { return window->history(); }

    int changes = 0;
};

TEST_F(ManualControlTest, DraggingAKnobWritesTheRecordAndIsOneStepBack) {
    drag(module(), "eqHiMidGain", {60, -30});
    EXPECT_NEAR(settings().eqHiMidGain, 6, 1e-9);
    EXPECT_EQ(history().undoText(), QStringLiteral("HI MID gain, channel 5"));
    drag(module(), "eqHiMidGain", {20, -10});
    history().undo();
    EXPECT_NEAR(settings().eqHiMidGain, 6, 1e-9) << "a second drag is a step of its own";
    const QPoint from = centre(module(), "aux5Level");
    QTest::mousePress(&module(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&module(), from - QPoint(0, 40));
    QTest::mouseMove(&module(), from);
    QTest::mouseRelease(&module(), Qt::LeftButton, {}, from);
    EXPECT_EQ(settings().aux5Level, 0);
    EXPECT_EQ(history().count(), 1) << "a drag that returns leaves no step";
    EXPECT_GT(changes, 0) << "the session is marked as changed";
    changes = 0;
    history().undo();
    EXPECT_EQ(settings(), Settings());
    EXPECT_EQ(changes, 1);
    history().redo();
    EXPECT_NEAR(settings().eqHiMidGain, 6, 1e-9);
    EXPECT_TRUE(received.empty()) << "nothing is ever sent";
}

TEST_F(ManualControlTest, EveryControlOfTheModuleFollowsAHandAndGoesBackToItsDefault) {
    ControlHost& host = module();
    for (int i = 0; i < host.controlCount(); ++i) {
        const QString id = QString(host.name(i));
        const double before = host.value(i).number;
        const QPoint at = host.controlRect(i).center();
        if (host.view(i).operation() == ControlView::Operation::click) {
            QTest::mouseClick(&host, Qt::LeftButton, {}, at);
            EXPECT_EQ(host.value(i).number, 1) << qPrintable(id);
            QTest::mouseClick(&host, Qt::LeftButton, {}, at);
        } else {
            QTest::mousePress(&host, Qt::LeftButton, {}, at);
            QTest::mouseMove(&host, at - QPoint(0, 25));
            QTest::mouseRelease(&host, Qt::LeftButton, {}, at);
            EXPECT_NE(host.value(i).number, before) << qPrintable(id);
            if (i % 2)
                QTest::mouseDClick(&host, Qt::LeftButton, {}, at);
            else
                QTest::mouseClick(&host, Qt::LeftButton, Qt::ControlModifier, at);
        }
        EXPECT_EQ(host.value(i).number, before) << qPrintable(id);
    }
    EXPECT_EQ(settings(), Settings());
    EXPECT_FALSE(model.channelState(ChannelKind::input(5))->eqOn.value());
}

TEST_F(ManualControlTest, TheWheelTurnsTheKnobUnderItUnlessItIsScrolling) {
    const QPoint at = centre(module(), "eqHiMidGain");
    wheel(module(), at, {0, 120}, {}, 1000);
    EXPECT_NEAR(settings().eqHiMidGain, 1, 1e-9) << "a notch is a delta of 10";
    wheel(module(), at, {0, 120}, {}, 1100);
    EXPECT_EQ(history().count(), 1) << "one gesture";
    EXPECT_EQ(window->desk().inputs().left(), 0);

    ControlHost& below = strip(ChannelKind::input(5));
    wheel(below, centre(below, "null"), {0, -120}, {}, 5000);
    const int left = window->desk().inputs().left();
    EXPECT_GT(left, 0);
    wheel(module(), at, {0, -120}, {}, 5200);
    EXPECT_GT(window->desk().inputs().left(), left) << "goes on scrolling";
    EXPECT_NEAR(settings().eqHiMidGain, 2, 1e-9);
    wheel(module(), at, {0, -120}, {}, 9000);
    EXPECT_NEAR(settings().eqHiMidGain, 1, 1e-9) << "another gesture";
}

TEST_F(ManualControlTest, KeysTurnWhatHasTheFocus) {
    module().focusControl(control(module(), "eqLoMidGain"), Qt::TabFocusReason);
    QTest::keyClick(&module(), Qt::Key_Up);
    QTest::keyClick(&module(), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_NEAR(settings().eqLoMidGain, 0.6, 1e-9);
    QTest::keyClick(&module(), Qt::Key_End);
    EXPECT_EQ(settings().eqLoMidGain, 15);
    module().focusControl(control(module(), "solo"), Qt::TabFocusReason);
    QTest::keyClick(&module(), Qt::Key_Up);
    EXPECT_TRUE(settings().solo);
    history().undo();
    EXPECT_TRUE(!settings().solo && settings().eqLoMidGain == 15);
    history().undo();
    EXPECT_EQ(settings().eqLoMidGain, 0) << "presses on one control are one step";
}

TEST_F(ManualControlTest, AValueIsTyped) {
    window->activateWindow();
    int played = 0;
    window->keys.onPlayStop = window->keys.onReturnToStart = [&] { ++played; };
    for (const Qt::Key letter : {Qt::Key_C, Qt::Key_R})
        window->keys.letters[letter] = [&] { ++played; };
    const auto type = [&](const char* id, const char* keys, Qt::Key end) {
        module().focusControl(control(module(), id), Qt::TabFocusReason);
        QTest::keyClick(&module(), keys[0]);
        auto* field = module().findChild<EntryField*>();
        ASSERT_TRUE(field);
        QTest::keyClicks(field, QLatin1String(keys + 1));
        QTest::keyClick(field, end);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    type("eqHiMidGain", "-4.5 dB", Qt::Key_Return);
    EXPECT_EQ(settings().eqHiMidGain, -4.5);
    EXPECT_EQ(module().focusedControl(), control(module(), "eqHiMidGain"));
    type("mainPan", "R 35", Qt::Key_Tab);
    EXPECT_NEAR(settings().mainPan, 0.35, 1e-9);
    EXPECT_EQ(module().focusedControl(), control(module(), "solo"));
    type("mainPan", "C", Qt::Key_Enter);
    EXPECT_EQ(settings().mainPan, 0);
    type("micTrim", "-30", Qt::Key_Escape);
    EXPECT_EQ(settings().micTrim, -67);
    EXPECT_EQ(played, 0) << "letters, space and Return belong to the text";
    QTest::keyClick(&module(), Qt::Key_R);
    EXPECT_EQ(played, 1) << "but no letter begins a level in decibels";
    type("aux6Level", "7x", Qt::Key_Return);
    EXPECT_TRUE(module().findChild<EntryField*>()) << "what means nothing stays to be mended";
    EXPECT_EQ(settings().aux6Level, 0);
}

TEST_F(ManualControlTest, TheMasterSectionIsWrittenDownAndTakenBack) {
    int masterChanges = 0;
    master.onChange = [&] { ++masterChanges; };
    ControlHost& host = *window->desk().master();
    for (int i = 0; i < host.controlCount(); ++i) {
        const double before = host.value(i).number;
        host.focusControl(i, Qt::TabFocusReason);
        QTest::keyClick(&host, Qt::Key_Up);
        EXPECT_NE(host.value(i).number, before) << qPrintable(host.name(i));
    }
    EXPECT_EQ(masterChanges, host.controlCount());
    while (history().canUndo())
        history().undo();
    EXPECT_EQ(master.settings.value(), MasterSectionSettings());

    MasterSectionSettings three;
    three.effectsReturns.removeLast();
    master.load(three);
    EXPECT_EQ(host.value(control(host, "return4.level")).number, 0);
    EXPECT_EQ(master.settings.value(), three) << "showing a short list pads nothing";
}

TEST_F(ManualControlTest, SettingsAreCopiedToASelectionInOneStep) {
    manualSettings.box(QStringLiteral("input-2")).edit(&Settings::eqHiMidGain, 4.0);
    manualSettings.box(QStringLiteral("input-6")).edit(&Settings::pad, true);
    for (const ChannelKind kind : {ChannelKind::stereo(), ChannelKind::group(3), ChannelKind::input(2)}) {
        QTest::mouseClick(&strip(kind), Qt::LeftButton, {}, centre(strip(kind), "bypass"));
        EXPECT_TRUE(manualSettings.settings(kind.id()).bypass);
    }
    history().clear();
    const auto number = [&](int channel, Qt::KeyboardModifiers modifiers) {
        ControlHost& host = strip(ChannelKind::input(channel));
        QTest::mouseClick(&host, Qt::LeftButton, modifiers, centre(host, "number"));
    };
    const auto choose = [&](int channel, int action) {
        const std::unique_ptr<QMenu> menu(window->desk().stripMenu(ChannelKind::input(channel).id(), window.get()));
        if (menu->actions()[action]->isEnabled()) menu->actions()[action]->trigger();
    };
    choose(4, 1);
    EXPECT_EQ(history().count(), 0) << "nothing was copied yet";
    choose(2, 0);
    number(5, {});
    number(7, Qt::ShiftModifier);
    number(9, Qt::ControlModifier);
    number(6, Qt::ControlModifier);
    choose(7, 1);
    for (const int channel : {5, 7, 9})
        EXPECT_EQ(settings(channel), settings(2)) << channel;
    EXPECT_TRUE(settings(6).pad) << "taken out of the selection";
    choose(6, 1); // outside the selection: alone
    EXPECT_EQ(settings(6), settings(2));
    history().undo();
    EXPECT_TRUE(settings(6).pad);
    history().undo();
    for (const int channel : {5, 7, 9})
        EXPECT_EQ(settings(channel), Settings());
}

} // namespace
} // namespace tessik
