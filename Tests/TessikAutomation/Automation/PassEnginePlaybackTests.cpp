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
    channel(ChannelKind::stereo()).nullTarget = 5;
    engine.setNullEnabled(false);
    for (ChannelState* each : model.allVisibleChannels())
        EXPECT_EQ(each->nullTarget.value(), std::nullopt);
}

TEST_F(PassEngineTest, NullNeedsTheTimecodesFrameRate) {
    arm(AutomationMode::read);
    locate(passStart);
    engine.setNullEnabled(true);
    engine.select(pass({fader(0, in1, 70)}, 50, MTCFrameRate::fps30));
    run(20ms);
    EXPECT_EQ(target(in1), std::nullopt);
    EXPECT_TRUE(engine.hasFrameRateMismatch.value());
    engine.select(pass({fader(0, in1, 70)}));
    run(20ms);
    EXPECT_EQ(target(in1), 70);
    EXPECT_FALSE(engine.hasFrameRateMismatch.value());
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
    desk.onVCAMoved = [&](Uptime, ChannelKind kind, int) { ++moves[kind]; };
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
}

TEST_F(PassEngineTest, ReadChasesJumpsAndNothingElse) {
    engine.select(pass({fader(10, in1, 60), switches(10, in2, muted), fader(100, in1, 90), switches(100, in2, {})}));
    arm(AutomationMode::read);
    rollFrom(0);
    runTo(110);
    EXPECT_EQ(desk.vca(in1), 90);
    desk.moveFader(in3, 99); // a hand; the next assertion takes it back
    run(20ms);
    tape.locate(TimecodePosition::fromTotalFrames(MTCFrameRate::fps25, passStart + 20));
    run(500ms);
    EXPECT_EQ(desk.vca(in1), 60);
    EXPECT_TRUE(desk.switches(in2).chanMuted);
    EXPECT_EQ(desk.vca(in3), 50);
    stop();
    desk.moveFader(in3, 98);
    locate(passStart + 110);
    run(500ms);
    EXPECT_EQ(desk.vca(in1), 60) << "a parked locate sends nothing";
    EXPECT_EQ(desk.vca(in3), 98);
    tape.play();
    run(500ms);
    EXPECT_EQ(desk.vca(in1), 90);
    EXPECT_EQ(desk.vca(in3), 50);
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

TEST_F(PassEngineTest, HandsAndRecallsHoldAChannelUntilItsNextEvent) {
    roll(AutomationMode::read, pass({fader(50, in1, 60)}));
    desk.moveFader(in1, 20);
    recall.recall({.id = {}, .name = {}, .createdAt = {}, .channels = {{.kind = in2, .faderValue = 21}}});
    runTo(49);
    EXPECT_EQ(desk.vca(in1), 20);
    EXPECT_EQ(shown(in1), 20);
    EXPECT_EQ(desk.vca(in2), 21);
    EXPECT_EQ(target(in2), 21);
    runTo(52);
    EXPECT_EQ(desk.vca(in1), 60);
    EXPECT_EQ(shown(in1), 60);
    EXPECT_EQ(desk.vca(in2), 21);
}

TEST_F(PassEngineTest, UnderNullTheScreenIsTheHandsAndTheDeskTheAutomations) {
    desk.moveFader(in1, 30); // the hand is known from before
    run(10ms);
    roll(AutomationMode::read, pass({fader(20, in1, 60)}));
    EXPECT_EQ(shown(in1), 50);
    engine.setNullEnabled(true);
    EXPECT_EQ(shown(in1), 30);
    EXPECT_EQ(target(in1), 50);
    desk.moveFader(in1, 40);
    run(20ms);
    EXPECT_EQ(shown(in1), 40);
    EXPECT_EQ(desk.vca(in1), 50) << "put back under the hand";
    runTo(22);
    EXPECT_EQ(shown(in1), 40);
    EXPECT_EQ(target(in1), 60);
    EXPECT_EQ(desk.vca(in1), 60);
    recall.recall({.id = {}, .name = {}, .createdAt = {}, .channels = {{.kind = in1, .faderValue = 21}}});
    run(20ms);
    EXPECT_EQ(shown(in1), 40);
    EXPECT_EQ(target(in1), 60);
    EXPECT_EQ(desk.vca(in1), 21);
    engine.setNullEnabled(false);
    EXPECT_EQ(shown(in1), 21) << "what the desk holds comes back on screen";
    EXPECT_EQ(target(in1), std::nullopt);
}

} // namespace
} // namespace tessik::test
