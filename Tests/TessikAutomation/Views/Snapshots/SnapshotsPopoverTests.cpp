#include "Support/Shown.h"
#include "TessikAutomation/Views/AutomationFixture.h"

namespace tessik::test {
namespace {

struct SnapshotsPopoverTest : AutomationWindowTest {
    SnapshotsPopoverTest() {
        QObject::connect(&snapshotsPopover, &SnapshotsPopover::recalled, &window,
                         [this](const Snapshot& snapshot) { recalled << snapshot.name; });
        click(snapshotsButton);
    }
    QWidget& section() { return find(snapshotsPopover, "card"); }
    EntryField& field() { return find<EntryField>(snapshotsPopover, "name"); }
    /// Sets input 5 and captures, by hand.
    void capture(const QString& name, int level) {
        showFader(model, ChannelKind::input(5), level);
        click(find(snapshotsPopover, "capture"));
        type(name);
        type(Qt::Key_Return);
    }
    int level() { return channel(ChannelKind::input(5)).faderValue.value(); }
    QWidget& part(int row, const char* name) { return find(*rows(snapshotsPopover)[std::size_t(row)], name); }

    QStringList recalled;
};

TEST_F(SnapshotsPopoverTest, CapturesUnderTheProposedNameOrAnother) {
    EXPECT_TRUE(shows(snapshotsPopover, QStringLiteral("SNAPSHOTS")));
    EXPECT_TRUE(shows(snapshotsPopover, QStringLiteral("No snapshots yet")));
    EXPECT_FALSE(section().isVisible());
    click(find(snapshotsPopover, "capture"));
    EXPECT_EQ(field().text(), QStringLiteral("Mar 4, 9:05 PM"));
    EXPECT_TRUE(field().hasFocus());
    click(find(snapshotsPopover, "drop"));
    EXPECT_FALSE(section().isVisible());
    EXPECT_TRUE(snapshots.snapshots.value().isEmpty());
    click(find(snapshotsPopover, "capture"));
    type(Qt::Key_Escape);
    EXPECT_FALSE(section().isVisible());
    EXPECT_TRUE(snapshotsPopover.isVisible());

    click(find(snapshotsPopover, "capture"));
    click(find(snapshotsPopover, "save"));
    capture(QStringLiteral("Loud"), 100);
    EXPECT_EQ(names(snapshotsPopover), (QStringList{QStringLiteral("Mar 4, 9:05 PM"), QStringLiteral("Loud")}));
    EXPECT_FALSE(section().isVisible());
    EXPECT_FALSE(hasKeyboard(snapshotsPopover)) << "Space plays again";
}

TEST_F(SnapshotsPopoverTest, RecallsStarsAndDeletes) {
    capture(QStringLiteral("Low"), 20);
    capture(QStringLiteral("High"), 110);
    click(*rows(snapshotsPopover)[0]);
    EXPECT_EQ(level(), 110) << "a click on the row recalls nothing";
    click(part(0, "recall"));
    EXPECT_EQ(level(), 20);
    run(200ms);
    EXPECT_EQ(desk.vca(ChannelKind::input(5)), 20);
    EXPECT_EQ(recalled, QStringList{QStringLiteral("Low")});

    click(part(1, "star"));
    EXPECT_EQ(snapshots.defaultSnapshot()->name, QStringLiteral("High"));
    EXPECT_TRUE(static_cast<QAbstractButton&>(part(1, "star")).isChecked());
    EXPECT_EQ(rows(snapshotsPopover)[1]->detail(), QStringLiteral("Mar 4, 9:05 PM  ·  starting state"));
    click(part(0, "star"));
    EXPECT_EQ(snapshots.defaultSnapshot()->name, QStringLiteral("Low"));
    EXPECT_FALSE(static_cast<QAbstractButton&>(part(1, "star")).isChecked());
    click(part(0, "star"));
    EXPECT_FALSE(snapshots.defaultSnapshot());
    EXPECT_FALSE(static_cast<QAbstractButton&>(part(0, "star")).isChecked());

    click(*rows(snapshotsPopover)[0]);
    type(Qt::Key_Down);
    type(Qt::Key_Return);
    EXPECT_EQ(level(), 110) << "Return recalls what the keys came to";

    click(part(0, "trash"));
    EXPECT_EQ(names(snapshotsPopover), QStringList{QStringLiteral("High")});
    click(part(0, "recall"));
    EXPECT_EQ(level(), 110);
}

TEST_F(SnapshotsPopoverTest, ADeletedSnapshotComesBackToItsPlaceWithItsStar) {
    for (const char* name : {"A", "B", "C"})
        capture(QLatin1String(name), 10);
    click(part(1, "star"));
    click(part(1, "trash"));
    EXPECT_FALSE(snapshots.defaultSnapshot());
    window.history().undo();
    settle();
    EXPECT_EQ(names(snapshotsPopover), (QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")}));
    EXPECT_EQ(snapshots.defaultSnapshot()->name, QStringLiteral("B"));
    snapshots.rename(snapshots.defaultSnapshot()->id, QStringLiteral("B2"));
    window.history().redo();
    window.history().undo();
    settle();
    EXPECT_EQ(names(snapshotsPopover)[1], QStringLiteral("B2"));
}

TEST_F(SnapshotsPopoverTest, CaptureRecallAndNameAreTakenBack) {
    capture(QStringLiteral("Low"), 20);
    window.history().undo();
    settle();
    EXPECT_EQ(names(snapshotsPopover), QStringList());
    window.history().redo();
    settle();
    EXPECT_EQ(names(snapshotsPopover), QStringList{QStringLiteral("Low")});
    desk.moveFader(ChannelKind::input(5), 99);
    run(200ms);
    bool isUndone = false;
    QObject::connect(&snapshotsPopover, &SnapshotsPopover::recallUndone, &window, [&] { isUndone = true; });
    click(part(0, "recall"));
    run(200ms);
    EXPECT_EQ(desk.vca(ChannelKind::input(5)), 20);
    window.history().undo();
    run(200ms);
    EXPECT_EQ(level(), 99);
    EXPECT_EQ(desk.vca(ChannelKind::input(5)), 99);
    EXPECT_TRUE(isUndone);
    Q_EMIT rows(snapshotsPopover)[0]->renamed(QStringLiteral("Soft"));
    settle();
    EXPECT_EQ(names(snapshotsPopover), QStringList{QStringLiteral("Soft")});
    window.history().undo();
    settle();
    EXPECT_EQ(names(snapshotsPopover), QStringList{QStringLiteral("Low")});
}

TEST_F(SnapshotsPopoverTest, StaysInTheWindowWhateverItHolds) {
    QList<Snapshot> many;
    for (int i = 0; i < 40; ++i)
        many.append(
            {.id = QUuid::createUuid(), .name = QString(200, QLatin1Char('M')), .createdAt = {}, .channels = {}});
    snapshots.load(many, std::nullopt);
    settle();
    for (const QSize size : {QSize(1366, 768), QSize(1600, 900), QSize(1040, 560)}) {
        window.resize(size);
        settle();
        EXPECT_TRUE(window.centralWidget()->rect().contains(snapshotsPopover.geometry().adjusted(20, 20, -20, -20)))
            << size.width();
        EXPECT_EQ(snapshotsPopover.x() % Metrics::grid, 0);
        for (const char* name : {"recall", "star", "trash"})
            EXPECT_TRUE(rows(snapshotsPopover)[0]->rect().contains(part(0, name).geometry())) << name;
    }
}

} // namespace
} // namespace tessik::test
