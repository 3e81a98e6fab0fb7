#include "Support/FarDesk.h"
#include "Support/Sessions.h"
#include "Support/Shown.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Snapshots/SnapshotRecall.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;

Snapshot snapshot(const char* name, qint64 created) {
    return {.id = QUuid::createUuid(), .name = QString::fromLatin1(name), .createdAt = second(created), .channels = {}};
}

QString names(const SnapshotStore& store) {
    QString all;
    for (const Snapshot& one : store.snapshots.value())
        all += one.name;
    return all;
}

TEST(SnapshotStore, SortsOnLoadAloneAndFollowsTheDefault) {
    SnapshotStore store;
    int changes = 0;
    store.onChange = [&] { ++changes; };
    const Snapshot a = snapshot("a", 1);
    Snapshot b = snapshot("b", 2);
    store.load({a, b, snapshot("c", 2)}, b.id);
    EXPECT_EQ(names(store), QStringLiteral("bca"));
    EXPECT_EQ(store.defaultSnapshot()->name, QStringLiteral("b"));
    EXPECT_EQ(changes, 0);

    store.save(snapshot("d", 9));
    b.name = QStringLiteral("B");
    store.save(b);
    EXPECT_EQ(names(store), QStringLiteral("cadB"));
    EXPECT_EQ(store.defaultSnapshot(), b);

    store.remove(a.id);
    EXPECT_EQ(store.defaultSnapshotID.value(), b.id);
    store.remove(b.id);
    EXPECT_EQ(store.defaultSnapshotID.value(), std::nullopt);
    EXPECT_EQ(changes, 4);

    store.toggleDefault(a.id); // names nothing by now
    EXPECT_EQ(store.defaultSnapshotID.value(), a.id);
    EXPECT_EQ(store.defaultSnapshot(), std::nullopt);
    store.toggleDefault(a.id);
    EXPECT_EQ(store.defaultSnapshotID.value(), std::nullopt);
    store.setDefault(std::nullopt);
    EXPECT_EQ(changes, 7);
}

TEST(ProposedName, IsTheLocalTimeOfTwelveHours) {
    const auto name = [](int hour, int minute) {
        return proposedName(QDateTime(QDate(2026, 3, 4), QTime(hour, minute)).toUTC());
    };
    EXPECT_EQ(name(21, 5), QStringLiteral("Mar 4, 9:05 PM"));
    EXPECT_EQ(name(0, 30), QStringLiteral("Mar 4, 12:30 AM"));
}

struct RecallTest : testing::Test {
    ManualUptimeClock clock;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, clock};
    ConsoleModel model{clock};
    ManualSettingsStore manual;
    MIDIOutputManager output{service, clock};
    SnapshotRecall recall{model, manual, output};
    FarDesk desk{service};
    std::vector<std::pair<int, int>>& sent = desk.received;

    RecallTest() {
        output.setupClient();
        output.refreshDestinations();
        output.selectDestination(desk.inID());
    }
    ~RecallTest() override { settle(); }
    void settle() {
        while (output.isBusy()) {
            clock.advance(1ms);
            output.pump();
        }
    }
};

TEST_F(RecallTest, PutsBackWhatWasCaptured) {
    ChannelState& input = *model.inputs()[6];
    showFader(model, input.kind, 96);
    showSwitches(model, input.kind, {true, false, true, true});
    manual.box(input.id).edit(&ManualChannelSettings::pad, true);
    const Snapshot taken = recall.capture(QStringLiteral("Verse"), second(0));
    ASSERT_EQ(taken.channels.size(), 41);
    EXPECT_EQ(taken.channels[6], (ChannelSnapshot{.kind = ChannelKind::input(7),
                                                  .faderValue = 96,
                                                  .monMuted = true,
                                                  .eqOn = true,
                                                  .chanMuted = true,
                                                  .manualSettings = manual.settings(input.id)}));
    EXPECT_EQ(taken.channels.last().kind, ChannelKind::stereo());

    showFader(model, input.kind, 3);
    showSwitches(model, input.kind, {});
    manual.resetAll();
    clock.advance(5s);
    int told = 0;
    const auto listener =
        model.changed.connect([&](const ConsoleChange& change) { told += change.origin == ChangeOrigin::recall; });
    recall.recall(taken);
    EXPECT_EQ(told, 82);
    EXPECT_EQ(input.faderValue.value(), 96);
    EXPECT_EQ(input.nullTarget.value(), 96);
    EXPECT_EQ(input.switches(), (ChannelSwitches{true, false, true, true}));
    EXPECT_EQ(input.lastUpdate.value(), clock.now());
    EXPECT_TRUE(manual.settings(input.id).pad);

    // The whole state goes out, also what the desk is believed to hold: once, and again.
    settle();
    EXPECT_EQ(sent.size(), 82u);
    EXPECT_TRUE(std::find(sent.begin(), sent.end(), std::pair(MIDIChannelMapping::faderCC(input.kind), 96)) !=
                sent.end());
    recall.recall(taken);
    settle();
    EXPECT_EQ(sent.size(), 164u);
}

TEST_F(RecallTest, IsTakenBackOnScreenInTheRecordsAndOnTheDesk) {
    ChannelState &known = *model.inputs()[0], &held = *model.inputs()[1], &unknown = *model.inputs()[2];
    const auto isSent = [this](const ChannelState& channel, int value) {
        return std::count(sent.begin(), sent.end(), std::pair(MIDIChannelMapping::faderCC(channel.kind), value));
    };
    const Snapshot low = recall.capture(QStringLiteral("Low"), second(0));
    model.handle(0, 90);
    model.handle(MIDIChannelMapping::switchCC(known.kind), MIDIChannelMapping::encodeSwitchByte({.auxMuted = true}));
    output.sendFader(held.kind, 70);
    showFader(model, held.kind, 33); // under NULL the screen shows the hand, and the desk holds the automation
    model.setNullTarget(held, 70);
    settle();
    manual.box(known.id).edit(&ManualChannelSettings::pad, true);
    const ManualChannelSettings records = manual.settings(known.id);

    const SnapshotRecall::Former former = recall.recall(low);
    settle();
    EXPECT_EQ(known.faderValue.value(), 0);
    EXPECT_FALSE(manual.settings(known.id).pad);
    sent.clear();
    recall.putBack(former);
    settle();
    EXPECT_EQ(known.faderValue.value(), 90);
    EXPECT_EQ(known.nullTarget.value(), std::nullopt);
    EXPECT_EQ(known.switches(), (ChannelSwitches{.auxMuted = true}));
    EXPECT_EQ(manual.settings(known.id), records);
    EXPECT_EQ(isSent(known, 90), 1);
    EXPECT_EQ(held.nullTarget.value(), 70);
    EXPECT_EQ(isSent(held, 70), 1);
    EXPECT_EQ(isSent(unknown, 0), 0) << "nobody knows where it stood";
}

TEST_F(RecallTest, SkipsWhatIsNotShownAndKeepsMIDIInRange) {
    Snapshot wide = snapshot("wide", 0);
    wide.channels = {
        {.kind = ChannelKind::input(25), .faderValue = 50, .manualSettings = ManualChannelSettings{.pad = true}},
        {.kind = ChannelKind::input(99), .faderValue = 50},
        {.kind = ChannelKind::group(8), .faderValue = 5000},
        {.kind = ChannelKind::stereo(), .faderValue = -1}};
    manual.box(QStringLiteral("group-8")).edit(&ManualChannelSettings::bypass, true);
    model.modelSize = ConsoleModel::ModelSize::ch24;
    recall.recall(wide);
    EXPECT_EQ(model.inputs()[24]->faderValue.value(), 0);
    EXPECT_FALSE(manual.settings(QStringLiteral("input-25")).pad);
    EXPECT_EQ(model.groups()[7]->faderValue.value(), 127);
    EXPECT_EQ(model.stereo().faderValue.value(), 0);
    EXPECT_TRUE(manual.settings(QStringLiteral("group-8")).bypass); // nothing recorded, nothing touched
    settle();
    EXPECT_EQ(sent.size(), 4u);
}

TEST_F(RecallTest, TheDefaultLeavesManualSettingsAlone) {
    SnapshotStore store;
    recall.recallDefault(store);
    EXPECT_TRUE(sent.empty());
    Snapshot start = snapshot("start", 0);
    start.channels = {
        {.kind = ChannelKind::stereo(), .faderValue = 91, .manualSettings = ManualChannelSettings{.pad = true}}};
    store.save(start);
    store.setDefault(start.id);
    recall.recallDefault(store);
    EXPECT_EQ(model.stereo().faderValue.value(), 91);
    EXPECT_FALSE(manual.settings(QStringLiteral("stereo")).pad);
    settle();
    EXPECT_EQ(sent.size(), 2u);
}

} // namespace
} // namespace tessik
