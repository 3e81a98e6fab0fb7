#include "Support/Shown.h"
#include "TessikAutomation/Views/AutomationFixture.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QScrollBar>

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
    EXPECT_EQ(rows(passesPopover)[1]->detail(), QStringLiteral("00:00:00:00  ·  0:47  ·  1200 events"));
    EXPECT_TRUE(hasKeyboard(passesPopover));

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

TEST_F(PassesPopoverTest, ChoosingSelectsAndTheSelectedAgainRecallsIt) {
    QStringList chosen;
    QObject::connect(&passesPopover, &PassesPopover::chosen, &window,
                     [&chosen](const AutomationPass& pass) { chosen << pass.name; });
    load();
    click(passesButton);
    click(*rows(passesPopover)[1]);
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus"));
    EXPECT_EQ(level(), 60);
    EXPECT_FALSE(rows(passesPopover)[0]->isChecked());
    EXPECT_TRUE(rows(passesPopover)[1]->isChecked());
    showFader(model, ChannelKind::input(5), 3);
    click(*rows(passesPopover)[1]);
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus"));
    EXPECT_TRUE(rows(passesPopover)[1]->isChecked());
    EXPECT_EQ(level(), 60) << "its starting state again";
    EXPECT_EQ(chosen, (QStringList{QStringLiteral("Chorus"), QStringLiteral("Chorus")}));
}

TEST_F(PassesPopoverTest, KeysGoOverTheListAndItsButtons) {
    QString moved; // by the window
    KeyboardArrowHandler keys(window);
    keys.onPlayStop = keys.onReturnToStart = keys.onLeft = keys.onRight = [&moved] { moved += u't'; };
    keys.letters[Qt::Key_W] = [&moved] { moved += u'w'; };
    passes.load({pass("A", 10), pass("B", 20, 0, 1), pass("C", 30, 0, 2)});
    engine.select(passes.passes.value()[1]);
    window.centralWidget()->setFocus();
    click(passesButton);
    const auto focused = [this] {
        const QWidget* part = QApplication::focusWidget();
        for (RecordRow* row : rows(passesPopover))
            if (row == part || row->isAncestorOf(part))
                return row->accessibleName() + (row == part ? QString() : QStringLiteral(".") + part->objectName());
        return part ? part->objectName() : QString();
    };
    EXPECT_EQ(focused(), QStringLiteral("B")) << "the selected one";
    const std::pair<Qt::Key, const char*> walk[]{
        {Qt::Key_Down, "C"},      {Qt::Key_Space, "C"},     {Qt::Key_Left, "C"},      {Qt::Key_Up, "B"},
        {Qt::Key_Up, "A"},        {Qt::Key_Up, "A"},        {Qt::Key_End, "C"},       {Qt::Key_Home, "A"},
        {Qt::Key_Tab, "A.lanes"}, {Qt::Key_Tab, "A.trash"}, {Qt::Key_Tab, "import"},  {Qt::Key_Up, "A"},
        {Qt::Key_Down, "B"},      {Qt::Key_Down, "C"},      {Qt::Key_Down, "import"}, {Qt::Key_Down, "import"},
        {Qt::Key_Up, "C"},        {Qt::Key_Tab, "C.lanes"}, {Qt::Key_Tab, "C.trash"}, {Qt::Key_Return, "B"}};
    for (const auto& [key, where] : walk) {
        type(key);
        EXPECT_EQ(focused(), QLatin1String(where)) << key;
    }
    EXPECT_EQ(names(passesPopover), (QStringList{QStringLiteral("A"), QStringLiteral("B")})) << "Return on the trash";
    type(Qt::Key_Up);
    type(Qt::Key_Return);
    EXPECT_EQ(selectedName(), QStringLiteral("A"));
    EXPECT_EQ(moved, QString()) << "no key of a list moves the tape";
    type(Qt::Key_W);
    EXPECT_EQ(moved, QStringLiteral("w"));

    passes.save(pass("Newer", 5, 0, -9)); // above it
    settle();
    EXPECT_EQ(focused(), QStringLiteral("A")) << "the keyboard stays with its record";
    type(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), window.centralWidget()) << "where it was before";
    type(Qt::Key_Space);
    EXPECT_EQ(moved, QStringLiteral("wt"));
}

TEST_F(PassesPopoverTest, OnlyRowsInSightAreMade) {
    QList<AutomationPass> many;
    for (int i = 0; i < 2000; ++i)
        many.append(pass(qPrintable(QString::number(i)), 0, 0, i));
    passes.load(many);
    click(passesButton);
    EXPECT_EQ(rows(passesPopover)[0]->accessibleName(), QStringLiteral("0"));
    type(Qt::Key_End);
    EXPECT_EQ(names(passesPopover).constLast(), QStringLiteral("1999"));
    EXPECT_EQ(rows(passesPopover).back()->accessibleDescription(),
              QStringLiteral("00:00:00:00  ·  0:00  ·  0 events, 2000 of 2000"));
    for (const Qt::Key key : {Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_F2})
        type(key);
    type(QStringLiteral("Renamed"));
    auto* bar = passesPopover.findChild<RecordList*>()->verticalScrollBar();
    for (int value = bar->maximum(); value >= 0; value -= 333)
        bar->setValue(value);
    EXPECT_TRUE(names(passesPopover).contains(QStringLiteral("1992"))) << "the row with the keyboard stays";
    type(Qt::Key_Return);
    EXPECT_EQ(passes.passes.value()[1992].name, QStringLiteral("Renamed"));
    EXPECT_LT(passesPopover.findChildren<RecordRow*>().size(), 15);
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

TEST_F(PassesPopoverTest, DeletingTheSelectedPassLetsGoOfItAndUndoSelectsItAgain) {
    load();
    engine.select(passes.passes.value()[0]);
    engine.mode = AutomationMode::read;
    click(passesButton);
    roll(1s);
    click(find(*rows(passesPopover)[0], "trash"));
    EXPECT_EQ(names(passesPopover), QStringList{QStringLiteral("Chorus")});
    EXPECT_EQ(selectedName(), QString());
    EXPECT_EQ(engine.mode.value(), AutomationMode::off);
    stop();
    click(*rows(passesPopover)[0]);
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus"));
    type(Qt::Key_Delete);
    EXPECT_TRUE(passes.passes.value().isEmpty());
    EXPECT_EQ(selectedName(), QString());
    EXPECT_TRUE(shows(passesPopover, QStringLiteral("No passes yet")));
    EXPECT_TRUE(hasKeyboard(passesPopover)) << "the list has the keyboard, not what is below it";
    window.history().undo();
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus"));
    window.history().undo();
    settle();
    EXPECT_EQ(names(passesPopover), (QStringList{QStringLiteral("Verse"), QStringLiteral("Chorus")}));
    EXPECT_EQ(passes.passes.value()[1].events.size(), 1200);
    EXPECT_EQ(selectedName(), QStringLiteral("Chorus")) << "selected later";
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

    type(Qt::Key_Tab);
    EXPECT_TRUE(field().hasFocus());
    EXPECT_EQ(field().selectedText(), field().text());
    type(Qt::Key_Space);
    EXPECT_EQ(playStops, 2) << "nothing is typed yet";
    type(QStringLiteral("My take"));
    EXPECT_EQ(playStops, 2) << "and now it is a letter";
    EXPECT_EQ(field().text(), QStringLiteral("My take"));
    type(Qt::Key_Return);
    EXPECT_FALSE(engine.recordingPass.value());
    EXPECT_EQ(names(passesPopover), QStringList{QStringLiteral("My take")});
    EXPECT_EQ(selectedName(), QStringLiteral("My take"));
    EXPECT_FALSE(section().isVisible());
    EXPECT_FALSE(passesButton.isCalling());
    EXPECT_FALSE(hasKeyboard(passesPopover));
    type(Qt::Key_Space);
    EXPECT_EQ(playStops, 3);
}

TEST_F(PassesPopoverTest, DiscardDropsTheTakeAndAnEmptyFieldMeansTheProposal) {
    recordTake();
    click(find(passesPopover, "drop"));
    EXPECT_FALSE(engine.recordingPass.value());
    EXPECT_TRUE(passes.passes.value().isEmpty());
    EXPECT_FALSE(section().isVisible());
    EXPECT_EQ(engine.mode.value(), AutomationMode::off) << "nothing is left to play";

    passesPopover.close();
    recordTake();
    const QString proposed = engine.recordingPass.value()->name;
    click(field());
    field().selectAll();
    type(Qt::Key_Delete);
    type(Qt::Key_Return);
    EXPECT_EQ(names(passesPopover), QStringList{proposed});
}

TEST_F(PassesPopoverTest, TheTakeIsComparedWithThePassBefore) {
    recordTake();
    EXPECT_FALSE(find(passesPopover, "playBefore").isVisible()) << "there is none";
    load();
    engine.select(passes.passes.value()[0]);
    engine.compare(false);
    passes.rename(passes.passes.value()[0].id, QStringLiteral("A verse with a name of a length & a half"));
    settle();
    auto& take = find<QAbstractButton>(passesPopover, "playTake");
    auto& before = find<QAbstractButton>(passesPopover, "playBefore");
    EXPECT_TRUE(take.isChecked());
    EXPECT_EQ(before.accessibleName(), QStringLiteral("A verse with a name of a length & a half"));
    EXPECT_TRUE(before.text().endsWith(QChar(0x2026))) << qPrintable(before.text());
    click(before);
    EXPECT_EQ(engine.playedPass.value()->id, passes.passes.value()[0].id);
    EXPECT_FALSE(take.isChecked());
    click(take);
    EXPECT_EQ(engine.playedPass.value(), engine.waitingTake.value());
    click(*rows(passesPopover)[1]);
    EXPECT_TRUE(before.isChecked()) << "a pass that is chosen is heard";
    EXPECT_EQ(before.text(), QStringLiteral("Chorus"));
}

TEST_F(PassesPopoverTest, ADiscardedTakeComesBack) {
    recordTake();
    const AutomationPass take = *engine.waitingTake.value();
    click(find(passesPopover, "drop"));
    window.history().undo();
    settle();
    EXPECT_EQ(engine.waitingTake.value(), take);
    EXPECT_TRUE(section().isVisible());
    window.history().redo();
    EXPECT_FALSE(engine.waitingTake.value());
    recordTake();
    const auto next = engine.waitingTake.value();
    window.history().undo();
    EXPECT_EQ(engine.waitingTake.value(), next) << "another waits";
    EXPECT_EQ(passes.passes.value(), QList<AutomationPass>{take});
    window.history().redo();
    EXPECT_EQ(engine.waitingTake.value(), next);
    EXPECT_TRUE(passes.passes.value().isEmpty());
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
