#include "TessikAutomation/Views/Automation/PassLanesView.h"
#include "TessikAutomation/Views/AutomationFixture.h"

#include <QScrollBar>

namespace tessik::test {
namespace {

struct PassLanesViewTest : AutomationWindowTest {
    PassLanesViewTest() {
        transport.selectDestination(idOf(service.destinations(), SimulatedRecorder::portName));
        passes.load({pass("Verse", 40, 1000), pass("Chorus", 60, 500, 10)});
        view = open(0);
        view->resize(900, 500);
        settle();
    }
    PassLanesView* open(const AutomationPass& shown) {
        const LaneObjects objects{passes, engine, labels, clock, transport, window.drawing()};
        return &PassLanesView::open(shown, objects, window.keys, &window);
    }
    PassLanesView* open(int row) { return open(passes.passes.value()[row]); }
    void clickRuler(double offset) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          QPoint(qRound(view->xOf(offset)), view->rulerRect().center().y()));
        run(50ms);
    }
    void turnWheel(QPoint at, int delta, Qt::KeyboardModifiers modifiers = {}) {
        QWheelEvent event(at, view->viewport()->mapToGlobal(at), {}, {0, delta}, {}, modifiers, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(view->viewport(), &event);
    }
    double lastVisible() const { return view->timeline().offsetAt(view->rulerRect().width()); }

    QPointer<PassLanesView> view;
};

TEST_F(PassLanesViewTest, AClickOnTheRulerLocatesButNotWhileRecording) {
    clickRuler(500);
    EXPECT_NEAR(double(tape.label(uptime.now()).totalFrames()), 500, view->timeline().framesPerPixel);
    EXPECT_EQ(view->tapeOffset(), double(tape.label(uptime.now()).totalFrames()));
    engine.mode = AutomationMode::write;
    roll(1s);
    ASSERT_TRUE(engine.isRecording());
    clickRuler(100);
    EXPECT_GT(tape.truePosition(uptime.now()), 500);
}

TEST_F(PassLanesViewTest, FollowsItsPass) {
    EXPECT_EQ(open(0), view) << "one window a pass";
    const QPointer<PassLanesView> other = open(1);
    EXPECT_NE(other, view);
    passes.rename(passes.passes.value()[0].id, QStringLiteral("Verse two"));
    passes.remove(passes.passes.value()[1].id);
    settle();
    EXPECT_EQ(view->windowTitle(), QStringLiteral("Verse two"));
    EXPECT_FALSE(other && other->isVisible());

    const AutomationPass take = pass("Take", 40, 7);
    engine.restoreTake(take);
    const QPointer<PassLanesView> taken = open(take);
    engine.finishRecording(QStringLiteral("Kept"), passes);
    settle();
    ASSERT_TRUE(taken && taken->isVisible());
    EXPECT_EQ(taken->windowTitle(), QStringLiteral("Kept"));
    passes.remove(take.id);
    engine.restoreTake(take);
    settle();
    engine.discardTake();
    settle();
    EXPECT_FALSE(taken && taken->isVisible());
}

TEST_F(PassLanesViewTest, TurnsThePageWithTheTapeThatRunsAlone) {
    locate(480);
    for (int i = 0; i < 10; ++i)
        view->zoom(1.5, view->xOf(480) - view->rulerRect().x());
    const double before = view->timeline().firstOffset;
    locate(900);
    EXPECT_EQ(view->timeline().firstOffset, before) << "the tape stands";
    locate(480);
    roll(8s);
    EXPECT_GT(view->timeline().firstOffset, before);
    EXPECT_GT(*view->tapeOffset(), view->timeline().firstOffset);
    EXPECT_LT(*view->tapeOffset(), lastVisible());
    stop();
    tape.setRate(MTCFrameRate::fps30);
    roll(1s);
    EXPECT_FALSE(view->tapeOffset()) << "another frame rate is nowhere in the pass";
}

TEST_F(PassLanesViewTest, WheelDragAndKeysZoomAndScroll) {
    const auto& timeline = view->timeline();
    const double whole = timeline.framesPerPixel;
    const QPoint at(600, 200);
    const auto under = [&] { return timeline.offsetAt(at.x() - view->rulerRect().x()); };
    double held = under();
    turnWheel(at, 480);
    EXPECT_LT(timeline.framesPerPixel, whole / 2);
    EXPECT_NEAR(under(), held, 1e-6);
    turnWheel(at, -120, Qt::ShiftModifier);
    EXPECT_GT(under(), held);
    held = under();
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseMove(view->viewport(), at + QPoint(50, 0));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, at + QPoint(50, 0));
    EXPECT_NEAR(under(), held - 50 * timeline.framesPerPixel, 1e-6);

    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Right}) {
        QTest::keyClick(view, key);
        EXPECT_NEAR(lastVisible(), 999, 20) << "not past the end";
    }
    QTest::keyClick(view, Qt::Key_Home);
    EXPECT_EQ(timeline.firstOffset, 0);
    const double zoomed = timeline.framesPerPixel;
    QTest::keyClick(view, Qt::Key_Plus);
    EXPECT_LT(timeline.framesPerPixel, zoomed);
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(view, Qt::Key_Minus);
    EXPECT_DOUBLE_EQ(timeline.framesPerPixel, whole) << "never less than all";
    for (int i = 0; i < 40; ++i)
        turnWheel(at, 480);
    EXPECT_GE(timeline.framesPerPixel, 1 / 48.0);
    QTest::keyClick(view, Qt::Key_End);
    EXPECT_GE(lastVisible(), 1000) << "the last frame is seen to its end";
}

} // namespace
} // namespace tessik::test
