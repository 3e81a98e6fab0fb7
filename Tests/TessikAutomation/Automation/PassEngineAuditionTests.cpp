#include "Support/PassEngineFixture.h"

namespace tessik::test {
namespace {

struct AuditionTest : PassEngineTest {
    const AutomationPass old = pass({fader(5, in2, 40)});

    /// A WRITE over `old`, in which input 1 went to 80.
    void writeTake() {
        engine.select(old);
        arm(AutomationMode::write);
        rollFrom(0);
        runTo(15);
        desk.moveFader(in1, 80);
        runTo(40);
        stop();
    }
    QString played() { return engine.playedPass.value() ? engine.playedPass.value()->name : QString(); }
    int heard() {
        run(300ms);
        return desk.vca(in1);
    }
};

TEST_F(AuditionTest, TheWaitingTakePlaysUnlessThePassBeforeIsComparedWithIt) {
    writeTake();
    EXPECT_EQ(engine.selectedPass.value(), old);
    EXPECT_EQ(engine.mode.value(), AutomationMode::read);
    desk.moveFader(in1, 7);
    rollFrom(20);
    EXPECT_EQ(heard(), 80);
    engine.compare(true);
    EXPECT_EQ(heard(), 50);
    engine.compare(false);
    EXPECT_EQ(heard(), 80);
    const AutomationPass gone = take();
    engine.discardTake();
    EXPECT_EQ(heard(), 50);
    EXPECT_FALSE(engine.waitingTake.value());
    EXPECT_TRUE(engine.restoreTake(gone));
    EXPECT_FALSE(engine.restoreTake(old)) << "one waits";
    EXPECT_EQ(heard(), 80);

    // Another pass is chosen to be heard; to choose none leaves the take.
    engine.select(pass({}, 60));
    EXPECT_TRUE(engine.isComparing.value());
    EXPECT_EQ(heard(), 60);
    engine.select(std::nullopt);
    EXPECT_EQ(heard(), 80);
    EXPECT_EQ(engine.mode.value(), AutomationMode::read);

    desk.moveFader(in1, 9);
    engine.finishRecording(QStringLiteral("Kept"), passes);
    EXPECT_EQ(heard(), 9) << "it plays on: the hand keeps what it took";
    EXPECT_EQ(engine.selectedPass.value()->id, gone.id);
    EXPECT_EQ(played(), QStringLiteral("Kept"));
}

TEST_F(AuditionTest, APlaySoonAfterAStopThatWasAskedForIsListening) {
    for (const bool isAsked : {false, true}) {
        arm(AutomationMode::write);
        rollFrom(0);
        runTo(15);
        desk.moveFader(in1, isAsked ? 70 : 80);
        runTo(40);
        if (isAsked) engine.noteStopSent();
        tape.stop();
        run(900ms);
        ASSERT_EQ(engine.mode.value(), AutomationMode::read);
        tape.play();
        run(500ms);
        EXPECT_EQ(engine.mode.value(), isAsked ? AutomationMode::read : AutomationMode::write);
        EXPECT_EQ(engine.isRecording(), !isAsked) << "what no one asked for may be a dropout";
        stop();
    }
}

TEST_F(AuditionTest, ATakeHasAFrameRateOfItsOwn) {
    writeTake();
    engine.select(pass({}, 60, MTCFrameRate::fps30));
    engine.compare(false);
    rollFrom(20);
    EXPECT_EQ(heard(), 80);
    EXPECT_FALSE(engine.hasFrameRateMismatch.value());
    engine.compare(true);
    EXPECT_EQ(heard(), 80) << "what does not fit is not played";
    EXPECT_TRUE(engine.hasFrameRateMismatch.value());
    engine.finishRecording(QStringLiteral("Kept"), passes);
    desk.moveFader(in1, 7);
    run(300ms);
    EXPECT_FALSE(engine.hasFrameRateMismatch.value());
}

TEST_F(AuditionTest, UpdateRidesOverWhatPlaysAndKeepsTheTake) {
    for (const bool isCompared : {false, true}) {
        SCOPED_TRACE(isCompared);
        writeTake();
        const AutomationPass waiting = take();
        passes.load({});
        engine.compare(isCompared);
        arm(AutomationMode::update);
        EXPECT_EQ(take(), waiting) << "until it rolls";
        rollFrom(20);
        runTo(30);
        EXPECT_THAT(passes.passes.value(), ElementsAre(waiting));
        EXPECT_EQ(engine.selectedPass.value(), isCompared ? old : waiting);
        EXPECT_EQ(desk.vca(in1), isCompared ? 50 : 80);
        screen.setFader(channel(in3), 99);
        runTo(35);
        stop();
        EXPECT_NE(take().id, waiting.id);
        EXPECT_EQ(fadersOf(take(), in1), fadersOf(isCompared ? old : waiting, in1));
        EXPECT_EQ(fadersOf(take(), in3).front().second, 99);
    }
}

TEST_F(AuditionTest, WhereNothingIsLeftToPlayNothingIsArmed) {
    struct Case {
        const char* name;
        std::function<void()> lose;
        AutomationMode mode; // after it
    };
    const std::vector<Case> cases{
        {"none selected", [this] { engine.select(std::nullopt); }, AutomationMode::off},
        {"New", [this] { engine.noteSessionReplaced(); }, AutomationMode::off},
        {"discarded, a pass before", [this] { engine.discardTake(); }, AutomationMode::read},
        {"discarded, no pass before",
         [this] {
             engine.select(std::nullopt);
             EXPECT_EQ(engine.mode.value(), AutomationMode::read) << "the take is there";
             engine.discardTake();
         },
         AutomationMode::off},
    };
    for (const bool isRolling : {false, true})
        for (const Case& each : cases) {
            SCOPED_TRACE(std::string(each.name) + (isRolling ? ", rolling" : ""));
            writeTake();
            if (each.name[0] != 'd') engine.finishRecording(QStringLiteral("Kept"), passes);
            if (isRolling) rollFrom(0);
            run(300ms);
            each.lose();
            EXPECT_EQ(engine.mode.value(), each.mode);
            arm(AutomationMode::off);
            stop();
        }
}

} // namespace
} // namespace tessik::test
