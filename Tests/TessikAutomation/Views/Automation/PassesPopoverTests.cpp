#include "TessikAutomation/Views/AutomationFixture.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

namespace tessik::test {
namespace {

struct PassesPopoverTest : AutomationWindowTest {
    void load() {
        passes.load({pass("Verse", 40, 3), pass("Chorus", 60, 1200, 10)});
        settle();
    }
    QWidget& section() { return find(passesPopover, "card"); }
    EntryField& field() { return find<EntryField>(passesPopover, "name"); }
    QString selectedName() {
        const auto& selected = engine.selectedPass.value();
        return selected ? selected->name : QString();
    }
    int level() { return channel(ChannelKind::input(5)).faderValue.value(); }
    void recordTake() {
        engine.mode = AutomationMode::write;
        roll(1s);
        desk.moveFader(ChannelKind::input(1), 77);
        run(1s);
        stop();
        settle();
    }
};

TEST_F(PassesPopoverTest, TheButtonCountsOpensAndCloses) {
    EXPECT_EQ(passesButton.text(), QStringLiteral("Passes (0)"));
    click(passesButton);
    EXPECT_TRUE(passesPopover.isVisible());
    EXPECT_TRUE(shows(passesPopover, QStringLiteral("PASSES")));
    EXPECT_TRUE(shows(passesPopover, QStringLiteral("No passes yet")));
    EXPECT_FALSE(section().isVisible());
    load();
    EXPECT_EQ(passesButton.text(), QStringLiteral("Passes (2)"));
    EXPECT_FALSE(shows(passesPopover, QStringLiteral("No passes yet")));
    EXPECT_EQ(names(passesPopover), (QStringList{QStringLiteral("Verse"), QStringLiteral("Chorus")}));
    EXPECT_EQ(rows(passesPopover)[1]->detail(), QStringLiteral("1200 events"));
    EXPECT_FALSE(hasKeyboard(passesPopover));

    click(passesButton);
    EXPECT_FALSE(passesPopover.isVisible());
    click(passesButton);
    type(Qt::Key_Escape);
    EXPECT_FALSE(passesPopover.isVisible());
    click(passesButton);
    QTest::mouseClick(&window.desk(), Qt::LeftButton, {}, QPoint(20, 500));
    EXPECT_FALSE(passesPopover.isVisible()) << "a press elsewhere";
    click(passesButton);
    click(snapshotsButton);
    EXPECT_FALSE(passesPopover.isVisible());
    EXPECT_TRUE(snapshotsPopover.isVisible());
}

TEST_F(PassesPopoverTest, AClickSelectsAndOnTheSelectedLetsGo) {
    load();
    click(passesButton);
    click(*rows(passesPopover)[1]);
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus"));
    EXPECT_EQ(level(), 60);
    EXPECT_FALSE(rows(passesPopover)[0]->isChecked());
    EXPECT_TRUE(rows(passesPopover)[1]->isChecked());
    click(*rows(passesPopover)[0]);
    EXPECT_EQ(selectedName(), QStringLiteral("Verse"));
    EXPECT_EQ(level(), 40);
    click(*rows(passesPopover)[0]);
    EXPECT_EQ(selectedName(), QString());
    EXPECT_FALSE(rows(passesPopover)[0]->isChecked());
    EXPECT_EQ(level(), 40);
}

TEST_F(PassesPopoverTest, RenamesInPlace) {
    load();
    click(passesButton);
    click(*rows(passesPopover)[0]);
    type(Qt::Key_F2);
    type(QStringLiteral("Verse two"));
    type(Qt::Key_Return);
    EXPECT_EQ(names(passesPopover), (QStringList{QStringLiteral("Verse two"), QStringLiteral("Chorus")}));
    EXPECT_EQ(passes.passes.value()[0].events.size(), 3);
    EXPECT_TRUE(rows(passesPopover)[0]->isChecked());

    type(Qt::Key_F2);
    type(QStringLiteral("x"));
    type(Qt::Key_Escape);
    EXPECT_EQ(names(passesPopover)[0], QStringLiteral("Verse two"));
    EXPECT_TRUE(passesPopover.isVisible()) << "Escape only dropped the name";
    type(Qt::Key_F2);
    type(Qt::Key_Backspace);
    type(Qt::Key_Return);
    EXPECT_EQ(names(passesPopover)[0], QStringLiteral("Verse two")) << "no name is no name";

    RecordRow& chorus = *rows(passesPopover)[1];
    QTest::keyClick(&chorus, Qt::Key_F2);
    settle();
    type(QStringLiteral("Bridge"));
    click(*rows(passesPopover)[0]); // elsewhere keeps it
    EXPECT_EQ(names(passesPopover)[1], QStringLiteral("Bridge"));

    QContextMenuEvent asked(QContextMenuEvent::Mouse, QPoint(60, 10), chorus.mapToGlobal(QPoint(60, 10)));
    QApplication::sendEvent(&chorus, &asked);
    auto* menu = chorus.findChild<QMenu*>();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->actions().constFirst()->shortcut(), QKeySequence(Qt::Key_F2));
    menu->close();
}

TEST_F(PassesPopoverTest, DeletingTheSelectedPassLetsGoOfItWhereTheTapeStands) {
    load();
    engine.select(passes.passes.value()[0]);
    engine.mode = AutomationMode::read;
    click(passesButton);
    roll(1s);
    click(find(*rows(passesPopover)[0], "trash"));
    EXPECT_EQ(names(passesPopover), QStringList{QStringLiteral("Chorus")});
    EXPECT_EQ(selectedName(), QStringLiteral("Verse")) << "it plays on";
    stop();
    click(*rows(passesPopover)[0]);
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus"));
    type(Qt::Key_Delete);
    EXPECT_TRUE(passes.passes.value().isEmpty());
    EXPECT_EQ(selectedName(), QString());
    EXPECT_TRUE(shows(passesPopover, QStringLiteral("No passes yet")));
    EXPECT_FALSE(hasKeyboard(window.desk())) << "the keyboard of what went away goes to nobody";
    window.history().undo();
    window.history().undo();
    settle();
    EXPECT_EQ(names(passesPopover), (QStringList{QStringLiteral("Verse"), QStringLiteral("Chorus")}));
    EXPECT_EQ(passes.passes.value()[1].events.size(), 1200);
    EXPECT_EQ(selectedName(), QString());
    window.history().redo();
    settle();
    EXPECT_EQ(names(passesPopover), QStringList{QStringLiteral("Chorus")});
}

TEST_F(PassesPopoverTest, ATakeThatEndsIsAskedForItsNameWithoutTakingTheKeyboard) {
    int playStops = 0;
    KeyboardArrowHandler keys(window);
    keys.onPlayStop = [&playStops] { ++playStops; };
    recordTake();
    ASSERT_TRUE(passesPopover.isVisible());
    EXPECT_TRUE(section().isVisible());
    EXPECT_TRUE(passesButton.isCalling());
    EXPECT_EQ(field().text(), engine.recordingPass.value()->name);
    EXPECT_FALSE(hasKeyboard(passesPopover));
    type(Qt::Key_Space);
    EXPECT_EQ(playStops, 1) << "Space still plays";

    click(field());
    field().selectAll();
    type(QStringLiteral("My take"));
    EXPECT_EQ(playStops, 1) << "and now it is a letter";
    EXPECT_EQ(field().text(), QStringLiteral("My take"));
    click(find(passesPopover, "save"));
    EXPECT_FALSE(engine.recordingPass.value());
    EXPECT_EQ(names(passesPopover), QStringList{QStringLiteral("My take")});
    EXPECT_EQ(selectedName(), QStringLiteral("My take"));
    EXPECT_FALSE(section().isVisible());
    EXPECT_FALSE(passesButton.isCalling());
    EXPECT_FALSE(hasKeyboard(passesPopover));
    type(Qt::Key_Space);
    EXPECT_EQ(playStops, 2);
}

TEST_F(PassesPopoverTest, DiscardDropsTheTakeAndAnEmptyFieldMeansTheProposal) {
    recordTake();
    click(find(passesPopover, "drop"));
    EXPECT_FALSE(engine.recordingPass.value());
    EXPECT_TRUE(passes.passes.value().isEmpty());
    EXPECT_FALSE(section().isVisible());

    passesPopover.close();
    recordTake();
    const QString proposed = engine.recordingPass.value()->name;
    click(field());
    field().selectAll();
    type(Qt::Key_Delete);
    type(Qt::Key_Return);
    EXPECT_EQ(names(passesPopover), QStringList{proposed});
}

TEST_F(PassesPopoverTest, AWaitingTakeStaysUntilTheNextOneBegins) {
    recordTake();
    type(Qt::Key_Escape);
    EXPECT_FALSE(passesPopover.isVisible());
    EXPECT_TRUE(passesButton.isCalling());
    click(passesButton);
    EXPECT_TRUE(section().isVisible());
    click(passesButton);

    engine.mode = AutomationMode::write;
    roll(1s);
    settle();
    EXPECT_FALSE(passesButton.isCalling());
    EXPECT_EQ(passesButton.text(), QStringLiteral("Passes (1)"));
    EXPECT_FALSE(passesPopover.isVisible());
    engine.mode = AutomationMode::off; // a take in which nothing moved waits all the same
    settle();
    EXPECT_TRUE(passesPopover.isVisible());
    EXPECT_TRUE(section().isVisible());
}

TEST_F(PassesPopoverTest, ADropoutTakesTheQuestionBack) {
    engine.mode = AutomationMode::write;
    roll(1s);
    service.unplug(SimulatedRecorder::portName);
    run(1s);
    settle();
    EXPECT_TRUE(passesPopover.isVisible());
    service.plug(SimulatedRecorder::portName);
    run(800ms);
    settle();
    EXPECT_EQ(engine.mode.value(), AutomationMode::write);
    EXPECT_FALSE(passesPopover.isVisible());
}

} // namespace
} // namespace tessik::test
