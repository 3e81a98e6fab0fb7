#include "Support/PassEngineFixture.h"

namespace tessik::test {
namespace {

// ---- WRITE

TEST_F(PassEngineTest, WriteRecordsTheConsoleAgainstTimecode) {
    desk.moveFader(in1, 11);
    locate(passStart);
    arm(AutomationMode::write);
    run(100ms);
    EXPECT_FALSE(engine.isRolling.value());
    tape.play();
    runTo(9);
    desk.moveFader(in1, 12);
    runTo(10);
    desk.setSwitches(in1, muted);
    runTo(12);
    desk.moveFader(in1, 13);
    run(3ms);
    desk.moveFader(in1, 13);
    desk.moveFader(in1, 12);
    runTo(20);
    screen.setFader(channel(in2), 44);
    screen.setSwitch(channel(in2), &ChannelState::eqOn, true);
    runTo(25);
    recall.recall({.id = {}, .name = {}, .createdAt = {}, .channels = {{.kind = in3, .faderValue = 21}}});
    runTo(30);
    engine.select(pass({})); // changes the screen alone
    runTo(35);
    output.resetChannels(model, false);
    runTo(40);
    EXPECT_EQ(engine.recordedEventCount.value(), 7);
    EXPECT_EQ(take().events.size(), 0) << "the take grows elsewhere";
    EXPECT_EQ(engine.pendingTake()->finished().events.size(), 7);
    stop();
    EXPECT_EQ(engine.mode.value(), AutomationMode::read);
    const std::int64_t late = takeStart() - passStart;
    EXPECT_NEAR(double(late), 2, 1) << "a position takes two frames to arrive";
    EXPECT_EQ(take().frameRate, MTCFrameRate::fps25);
    EXPECT_EQ(take().initialState->size(), 41);
    EXPECT_EQ(take().initialState->front().faderValue, 11);
    EXPECT_THAT(fadersOf(take(), in1),
                ElementsAre(std::pair(9 - late, 12), std::pair(12 - late, 13), std::pair(12 - late, 12)));
    EXPECT_THAT(mutesOf(take(), in1), ElementsAre(std::pair(10 - late, true)));
    EXPECT_THAT(fadersOf(take(), in2), ElementsAre(std::pair(20 - late, 44)));
    EXPECT_THAT(mutesOf(take(), in2), ElementsAre(std::pair(20 - late, false)));
    EXPECT_THAT(fadersOf(take(), in3), ElementsAre(std::pair(25 - late, 21)));
    EXPECT_EQ(mutesOf(take(), in3).size(), 0u) << "what does not change is no event";

    const auto stored = engine.finishRecording(QString(), passes);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->name, QString());
    EXPECT_THAT(passes.passes.value(), ElementsAre(*stored));
    EXPECT_EQ(engine.selectedPass.value(), *stored);
    EXPECT_FALSE(engine.recordingPass.value());
    EXPECT_FALSE(engine.finishRecording(QStringLiteral("again"), passes));
    EXPECT_EQ(passes.passes.value().size(), 1);
}

TEST_F(PassEngineTest, MovesBehindTheLastTimecodeAreInTheTakeOnlyWhenTheTapeRollsOn) {
    for (const bool isDropout : {false, true}) {
        SCOPED_TRACE(isDropout);
        arm(AutomationMode::write);
        rollFrom(0);
        runTo(20);
        desk.moveFader(in1, isDropout ? 20 : 120);
        runTo(30);
        service.unplug(SimulatedRecorder::portName); // the cable alone: the tape may roll on
        if (!isDropout) tape.stop();
        run(300ms);
        desk.moveFader(in1, isDropout ? 30 : 130);
        run(700ms);
        EXPECT_FALSE(engine.isRolling.value());
        EXPECT_EQ(engine.mode.value(), AutomationMode::read);
        EXPECT_EQ(fadersOf(take(), in1).size(), 1u);
        desk.moveFader(in1, isDropout ? 40 : 140);
        run(isDropout ? 100ms : 1200ms); // what is away for two seconds has stopped
        service.plug(SimulatedRecorder::portName);
        QCoreApplication::sendPostedEvents();
        tape.play();
        run(500ms);
        EXPECT_EQ(engine.isRecording(), isDropout);
        EXPECT_EQ(engine.mode.value(), isDropout ? AutomationMode::write : AutomationMode::read);
        stop();
        if (!isDropout) {
            EXPECT_EQ(fadersOf(take(), in1).size(), 1u);
            engine.discardTake();
            EXPECT_FALSE(engine.recordingPass.value());
            continue;
        }
        const std::int64_t late = takeStart() - passStart;
        const auto moves = fadersOf(take(), in1);
        ASSERT_EQ(moves.size(), 3u);
        EXPECT_EQ(moves[0].first, 20 - late);
        EXPECT_NEAR(double(moves[1].first + late), 30.25 + 0.3 * 25, 1);
        EXPECT_NEAR(double(moves[2].first + late), 30.25 + 1.0 * 25, 1);
    }
}

TEST_F(PassEngineTest, WhatEndsATake) {
    const auto jump = [this](std::int64_t offset) {
        tape.locate(TimecodePosition::fromTotalFrames(MTCFrameRate::fps25, passStart + offset));
    };
    struct Case {
        const char* name;
        std::function<void()> end;
        AutomationMode mode; // after it
        bool isUpdatesAlone = false;
    };
    const std::vector<Case> cases{
        {"stop", [this] { tape.stop(); }, AutomationMode::read},
        {"back", [&] { jump(10); }, AutomationMode::read},
        {"ahead", [&] { jump(300); }, AutomationMode::read},
        {"full frame where it is", [&] { jump(31); }, AutomationMode::read},
        {"READ pressed", [this] { arm(AutomationMode::read); }, AutomationMode::read},
        {"all off", [this] { arm(AutomationMode::off); }, AutomationMode::off},
        {"New", [this] { engine.noteSessionReplaced(); }, AutomationMode::read},
        {"a pass chosen", [this] { engine.select(pass({})); }, AutomationMode::read, true},
        {"its name given", [this] { engine.finishRecording({}, passes); }, AutomationMode::read},
    };
    for (const AutomationMode recording : {AutomationMode::write, AutomationMode::update})
        for (const Case& each : cases) {
            SCOPED_TRACE(each.name);
            if (each.isUpdatesAlone && recording == AutomationMode::write) continue;
            engine.select(pass({fader(35, in3, 60)}));
            arm(recording);
            rollFrom(0);
            runTo(20);
            desk.moveFader(in1, desk.vca(in1) == 100 ? 90 : 100);
            desk.moveFader(in1, desk.vca(in1) == 100 ? 80 : 110);
            run(50ms);
            desk.moveFader(in1, desk.vca(in1) == 100 ? 70 : 115);
            runTo(30);
            EXPECT_TRUE(engine.isRecording());
            screen.setFader(channel(in2), 99);
            each.end();
            run(1s);
            EXPECT_FALSE(engine.isRecording());
            EXPECT_EQ(engine.mode.value(), each.mode);
            const auto& named = engine.selectedPass.value();
            const AutomationPass ended = engine.recordingPass.value().value_or(named.value_or(AutomationPass()));
            EXPECT_FALSE(fadersOf(ended, in1).empty());
            EXPECT_FALSE(fadersOf(ended, in2).empty()) << "not even the last move is lost";
            arm(AutomationMode::off);
            stop();
            engine.discardTake();
        }
}

// ---- UPDATE

TEST_F(PassEngineTest, UpdateRidesOverThePass) {
    desk.moveFader(in1, 70); // known hand
    run(20ms);
    const AutomationPass old =
        pass({fader(10, in1, 60), fader(20, in2, 55), fader(40, in1, 90), switches(45, in1, {.eqOn = true}),
              switches(70, in1, {.monMuted = true}), fader(60, in1, 40), fader(120, in1, 80)});
    engine.select(old);
    arm(AutomationMode::update);
    rollFrom(0);
    runTo(30);
    EXPECT_EQ(desk.vca(in1), 60);
    desk.moveFader(in1, 75); // five up
    desk.moveFader(in2, 33); // unknown hand: a reference, and put back
    run(30ms);
    EXPECT_EQ(desk.vca(in1), 65);
    EXPECT_EQ(shown(in1), 65);
    EXPECT_EQ(desk.vca(in2), 55);
    EXPECT_EQ(shown(in2), 55);
    runTo(42);
    EXPECT_EQ(desk.vca(in1), 95);
    desk.setSwitches(in1, muted);
    runTo(50);
    EXPECT_EQ(desk.switches(in1), (ChannelSwitches{.eqOn = true, .chanMuted = true}));
    screen.setFader(channel(in1), 127);
    runTo(62);
    EXPECT_EQ(desk.vca(in1), 77);
    runTo(72);
    EXPECT_EQ(desk.switches(in1), (ChannelSwitches{.monMuted = true, .chanMuted = true}));
    runTo(100);
    stop();
    const std::int64_t end = fadersOf(take(), in1).end()[-2].first;
    EXPECT_NEAR(double(end), 101, 1);
    EXPECT_THAT(fadersOf(take(), in1),
                ElementsAre(std::pair(10, 60), std::pair(30, 65), std::pair(40, 95), std::pair(50, 127),
                            std::pair(60, 77), std::pair(end, 40), std::pair(120, 80)));
    EXPECT_THAT(fadersOf(take(), in2), ElementsAre(std::pair(20, 55)));
    EXPECT_THAT(mutesOf(take(), in1),
                ElementsAre(std::pair(42, true), std::pair(45, true), std::pair(70, true), std::pair(end, false)));
    EXPECT_EQ(take().initialState, old.initialState);
    EXPECT_EQ(take().startTimecode, old.startTimecode);
    EXPECT_NE(take().id, old.id);
    EXPECT_EQ(engine.selectedPass.value(), old);

    // The take waits: NULL shows the updated mix, and the old pass again once it is gone.
    EXPECT_EQ(engine.mode.value(), AutomationMode::read);
    engine.setNullEnabled(true);
    EXPECT_EQ(target(in1), 77);
    locate(passStart + 50);
    EXPECT_EQ(target(in1), 127);
    tape.play();
    runTo(62);
    EXPECT_EQ(desk.vca(in1), 77) << "the ride is in it, and not on top again";
    stop();
    locate(passStart + 50);
    engine.discardTake();
    run(20ms);
    EXPECT_EQ(target(in1), 90);
}

TEST_F(PassEngineTest, WhatTheDeskTellsOfOurOwnValueIsNoRide) {
    desk.moveFader(in1, 70); // known hand
    run(20ms);
    roll(AutomationMode::update, pass({}));
    desk.moveFader(in1, 75);
    run(10ms);
    EXPECT_EQ(desk.vca(in1), 55);
    model.handle(uptime.now(), 0, 55); // the hand moved on, but our answer came before the desk could tell
    run(10ms);
    EXPECT_EQ(desk.vca(in1), 55);
    desk.moveFader(in1, 78);
    run(20ms);
    EXPECT_EQ(desk.vca(in1), 58);
}

TEST_F(PassEngineTest, OfTwoChangesBetweenTicksTheLaterHolds) {
    roll(AutomationMode::update, pass({}));
    screen.setFader(channel(in1), 80);
    recall.recall({.id = {}, .name = {}, .createdAt = {}, .channels = {{.kind = in1, .faderValue = 21}}});
    run(100ms);
    EXPECT_EQ(shown(in1), 21);
    EXPECT_EQ(desk.vca(in1), 21);
    engine.setNullEnabled(true);
    desk.moveFader(in1, 30);
    run(20ms);
    recall.recall({.id = {}, .name = {}, .createdAt = {}, .channels = {{.kind = in1, .faderValue = 22}}});
    desk.moveFader(in1, 33);
    run(100ms);
    EXPECT_EQ(shown(in1), 33);
}

TEST_F(PassEngineTest, ARecoveredTakeIsTheTakeSoFar) {
    engine.select(pass({fader(10, in1, 60), fader(200, in1, 70)}));
    arm(AutomationMode::update);
    rollFrom(0);
    runTo(20);
    screen.setFader(channel(in1), 80);
    runTo(30);
    const PendingTake early = *engine.pendingTake();
    screen.setFader(channel(in1), 90);
    runTo(40);
    EXPECT_THAT(fadersOf(early.finished(), in1),
                ElementsAre(std::pair(10, 60), std::pair(20, 80), std::pair(30, 60), std::pair(200, 70)));
    stop();
    EXPECT_EQ(fadersOf(engine.pendingTake()->finished(), in1), fadersOf(take(), in1));
    EXPECT_EQ(fadersOf(take(), in1).size(), 5u);
}

TEST_F(PassEngineTest, ADumpTakesItsRidesBackAndForgetsTheHands) {
    for (const ChannelKind kind : desk.channels()) {
        desk.moveFader(kind, 64);
        run(100ms); // hands, no dump
    }
    roll(AutomationMode::update, pass({fader(100, in2, 77)}));
    desk.moveFader(in3, 74); // a true ride
    runTo(40);
    desk.recallScene(0);
    run(1200ms);
    for (const ChannelKind kind : desk.channels()) {
        EXPECT_EQ(desk.vca(kind), kind == in3 ? 60 : 50) << qPrintable(kind.id());
        EXPECT_EQ(desk.switches(kind), ChannelSwitches{});
    }
    desk.moveFader(in1, 90); // the first after the dump is a reference again
    run(100ms);
    EXPECT_EQ(desk.vca(in1), 50);
    runTo(110);
    stop();
    EXPECT_THAT(fadersOf(take(), in1), ElementsAre());
    EXPECT_THAT(fadersOf(take(), in2), ElementsAre(std::pair(100, 77)));
    EXPECT_EQ(fadersOf(take(), in3).front(), std::pair(std::int64_t(10), 60));
    for (const TimedEvent& event : take().events)
        EXPECT_TRUE(event.kind == in2 || event.kind == in3) << qPrintable(event.kind.id());
}

} // namespace
} // namespace tessik::test
