#include "Support/PassEngineFixture.h"

namespace tessik::test {
namespace {

// ---- parked

TEST_F(PassEngineTest, SelectingShowsTheBaselineAndSendsNothing) {
    run(100ms);
    engine.select(pass({fader(0, in1, 70)}));
    EXPECT_EQ(shown(in1), 50);
    EXPECT_EQ(engine.unsyncedChannelCount(), 0);
    run(200ms);
    EXPECT_EQ(desk.vca(in1), 0);

    AutomationPass bare = pass({});
    bare.initialState.reset();
    engine.select(bare);
    EXPECT_EQ(shown(in1), 50) << "without a starting state anywhere the console stays as it is";
    const Snapshot snapshot{.id = QUuid::createUuid(), .name = {}, .createdAt = currentSecond(), .channels = flat(33)};
    snapshots.load({snapshot}, snapshot.id);
    engine.select(bare);
    EXPECT_EQ(shown(in1), 33);
    engine.select(std::nullopt);
    EXPECT_EQ(shown(in1), 33);
}

TEST_F(PassEngineTest, HiddenChannelsAreSkipped) {
    model.modelSize = ConsoleModel::ModelSize::ch24;
    EXPECT_EQ(engine.unsyncedChannelCount(), 33);
    engine.select(pass({fader(0, ChannelKind::input(30), 99), fader(0, ChannelKind::input(99), 98)}));
    arm(AutomationMode::read);
    rollFrom(0);
    run(1s);
    EXPECT_EQ(shown(ChannelKind::input(30)), 0);
    EXPECT_EQ(desk.vca(ChannelKind::input(30)), 0);
    EXPECT_EQ(desk.vca(ChannelKind::input(24)), 50);
}

TEST_F(PassEngineTest, NullTargetsFollowSelectionPositionAndSwitch) {
    arm(AutomationMode::read);
    engine.setNullEnabled(true);
    EXPECT_EQ(target(in1), std::nullopt);
    engine.select(pass({fader(0, in1, 70), fader(0, in1, 71), fader(10, in1, 80), fader(20, in2, 300)}));
    EXPECT_EQ(shown(in1), 0) << "no fader on screen moves";
    EXPECT_EQ(target(in1), 71) << "no timecode: the start; the later of two events of a frame";
    EXPECT_EQ(target(in2), 50);
    locate(passStart + 20);
    EXPECT_EQ(target(in1), 80);
    EXPECT_EQ(target(in2), 127);
    locate(passStart - 100);
    EXPECT_EQ(target(in1), 50);
    engine.select(pass({}, 50, MTCFrameRate::fps30));
    run(20ms);
    EXPECT_EQ(target(in1), std::nullopt) << "the timecode's rate is another";
    EXPECT_TRUE(engine.hasFrameRateMismatch.value());
    engine.select(pass({}));
    run(20ms);
    EXPECT_EQ(target(in1), 50);
    EXPECT_FALSE(engine.hasFrameRateMismatch.value());
    engine.setNullEnabled(false);
    for (ChannelState* each : model.allVisibleChannels())
        EXPECT_EQ(each->nullTarget.value(), std::nullopt);
}

TEST_F(PassEngineTest, LeavingReadAndUpdateReleasesNull) {
    engine.select(pass({}));
    for (const AutomationMode mode : {AutomationMode::off, AutomationMode::write}) {
        arm(AutomationMode::read);
        engine.setNullEnabled(true);
        arm(AutomationMode::update);
        EXPECT_TRUE(engine.nullEnabled.value());
        arm(mode);
        EXPECT_FALSE(engine.nullEnabled.value());
        EXPECT_EQ(target(in1), std::nullopt);
    }
}

// ---- READ

TEST_F(PassEngineTest, ReadAssertsOnceThenPlays) {
    engine.select(pass({switches(2, in2, muted), fader(5, in1, 60), fader(40, in1, 90), switches(60, in2, {})}));
    arm(AutomationMode::read);
    std::map<ChannelKind, int, decltype([](ChannelKind a, ChannelKind b) { return a.id() < b.id(); })> moves;
    const auto listener = desk.vcaMoved.connect([&](Uptime, ChannelKind kind, int) { ++moves[kind]; });
    rollFrom(20);
    runTo(30);
    EXPECT_TRUE(engine.isRolling.value());
    for (const ChannelKind kind : desk.channels())
        EXPECT_EQ(moves[kind], 1) << qPrintable(kind.id());
    EXPECT_EQ(desk.vca(in1), 60);
    EXPECT_TRUE(desk.switches(in2).chanMuted);
    runTo(39);
    EXPECT_EQ(desk.vca(in1), 60);
    runTo(41);
    EXPECT_EQ(desk.vca(in1), 90);
    EXPECT_EQ(shown(in1), 90);
    EXPECT_TRUE(desk.switches(in2).chanMuted);
    runTo(61);
    EXPECT_FALSE(desk.switches(in2).chanMuted);
    stop();
    EXPECT_FALSE(engine.isRolling.value());
    EXPECT_EQ(engine.mode.value(), AutomationMode::read);
    moves.clear();
    locate(passStart + 20);
    run(500ms);
    EXPECT_TRUE(moves.empty()) << "a parked locate sends nothing";
}

TEST_F(PassEngineTest, ArmingSelectingAndChoosingADeskWhileRollingAssert) {
    rollFrom(0);
    runTo(10);
    engine.select(pass({fader(5, in1, 60)}));
    run(300ms);
    EXPECT_EQ(desk.vca(in1), 0);
    arm(AutomationMode::read);
    run(300ms);
    EXPECT_EQ(desk.vca(in1), 60);
    engine.select(pass({fader(5, in1, 70)}));
    run(300ms);
    EXPECT_EQ(desk.vca(in1), 70);
    const auto id = output.port.connectedDestinationID.value();
    output.selectDestination(std::nullopt);
    desk.moveFader(in1, 5);
    run(300ms);
    output.selectDestination(id);
    run(300ms);
    EXPECT_EQ(desk.vca(in1), 70);
    engine.select(pass({fader(5, in1, 80)}, 50, MTCFrameRate::fps24));
    run(300ms);
    EXPECT_EQ(desk.vca(in1), 70) << "another frame rate is not played";
    EXPECT_TRUE(engine.hasFrameRateMismatch.value());
}

TEST_F(PassEngineTest, UnderNullAHandRidesOnlyFromItsTargetOn) {
    struct Case {
        const char* name;
        std::vector<int> hand; // of which the first is known from before
        int output;
    };
    for (const Case& each :
         {Case{"on the way", {30, 35, 40, 45}, 50}, Case{"away from it", {30, 20}, 50},
          Case{"meets it, and rides", {30, 40, 50, 57}, 57}, Case{"meets it from above", {80, 51, 46}, 45},
          Case{"passes it, and rides from there", {30, 56}, 56}, Case{"passes it and comes back", {30, 56, 50, 48}, 48},
          Case{"stood there from the first", {50, 44}, 44}, Case{"unknown", {-1, 70, 60}, 50}}) {
        SCOPED_TRACE(each.name);
        if (each.hand.front() >= 0)
            desk.moveFader(in1, each.hand.front());
        else
            desk.recallScene(0);
        run(1s);
        engine.select(pass({}));
        arm(AutomationMode::update);
        engine.setNullEnabled(true);
        rollFrom(0);
        runTo(10);
        EXPECT_EQ(desk.vca(in1), 50);
        for (std::size_t i = 1; i < each.hand.size(); ++i) {
            desk.moveFader(in1, each.hand[i]);
            run(50ms);
            EXPECT_EQ(shown(in1), each.hand[i]);
        }
        EXPECT_EQ(desk.vca(in1), each.output);
        EXPECT_EQ(target(in1), each.output);
        stop();
        EXPECT_EQ(fadersOf(take(), in1).empty(), each.output == 50);
        arm(AutomationMode::off);
        engine.discardTake();
    }
}

TEST_F(PassEngineTest, ATargetThatComesToTheHandIsMetAndARollAsksAnew) {
    desk.moveFader(in1, 30);
    run(20ms);
    engine.select(pass({fader(20, in1, 30), fader(30, in1, 90)}));
    arm(AutomationMode::update);
    engine.setNullEnabled(true);
    rollFrom(0);
    runTo(35);
    EXPECT_EQ(desk.vca(in1), 90);
    desk.moveFader(in1, 32);
    run(50ms);
    EXPECT_EQ(desk.vca(in1), 92) << "they have met at frame 20";
    engine.setNullEnabled(false);
    desk.moveFader(in1, 34);
    run(50ms);
    EXPECT_EQ(desk.vca(in1), 94);
    engine.setNullEnabled(true);
    desk.moveFader(in1, 40);
    run(50ms);
    EXPECT_EQ(desk.vca(in1), 94) << "to be met again";
    desk.moveFader(in1, 94);
    run(50ms);
    stop();
    desk.moveFader(in1, 80);
    engine.discardTake();
    arm(AutomationMode::update);
    rollFrom(20);
    runTo(35);
    desk.moveFader(in1, 100);
    run(50ms);
    EXPECT_EQ(desk.vca(in1), 100) << "passed it";
    stop();
    arm(AutomationMode::update);
    rollFrom(0);
    runTo(10);
    desk.moveFader(in1, 99);
    run(50ms);
    EXPECT_EQ(desk.vca(in1), 50) << "the hand is far from where this roll begins";
}

TEST_F(PassEngineTest, NullDoesNotOutliveADropoutOfAWrite) {
    arm(AutomationMode::write);
    rollFrom(0);
    runTo(20);
    service.unplug(SimulatedRecorder::portName);
    run(800ms);
    ASSERT_EQ(engine.mode.value(), AutomationMode::read);
    engine.setNullEnabled(true);
    service.plug(SimulatedRecorder::portName);
    for (int i = 0; i < 500 && engine.mode.value() != AutomationMode::write; ++i)
        run(1ms);
    ASSERT_EQ(engine.mode.value(), AutomationMode::write);
    EXPECT_FALSE(engine.nullEnabled.value());
    EXPECT_EQ(target(in1), std::nullopt);
}

TEST_F(PassEngineTest, ChannelsThatComeWithTheConsolesSizeAreAsserted) {
    model.modelSize = ConsoleModel::ModelSize::ch24;
    roll(AutomationMode::read, pass({fader(5, ChannelKind::input(30), 70)}));
    model.modelSize = ConsoleModel::ModelSize::ch32;
    run(200ms);
    EXPECT_EQ(desk.vca(ChannelKind::input(29)), 50);
    EXPECT_EQ(desk.vca(ChannelKind::input(30)), 70);
    EXPECT_EQ(shown(ChannelKind::input(30)), 70);
}

TEST_F(PassEngineTest, AZeroOfTheScreenLeavesWhereNullLeads) {
    desk.moveFader(in1, 30);
    run(20ms);
    engine.select(pass({}));
    arm(AutomationMode::read);
    locate(passStart);
    engine.setNullEnabled(true);
    output.resetChannels(model, false);
    run(20ms);
    EXPECT_EQ(target(in1), 50);
    EXPECT_EQ(shown(in1), 30);
    EXPECT_EQ(shown(in2), 0);
}

} // namespace
} // namespace tessik::test
