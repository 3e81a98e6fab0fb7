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
    PassLanesView* open(int row) {
        const LaneObjects objects{passes, engine, labels, clock, transport, window.drawing()};
        return &PassLanesView::open(passes.passes.value()[row], objects, window.keys, &window);
    }
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
    ASSERT_TRUE(view->tapeOffset());
    EXPECT_EQ(*view->tapeOffset(), double(tape.label(uptime.now()).totalFrames()));

    engine.mode = AutomationMode::write;
    roll(1s);
    ASSERT_TRUE(engine.isRecording());
    clickRuler(100);
    EXPECT_GT(tape.truePosition(uptime.now()), 500);
    stop();
    clickRuler(100);
    EXPECT_NEAR(tape.truePosition(uptime.now()), 100, view->timeline().framesPerPixel);
}

TEST_F(PassLanesViewTest, WhatBeginsInTheLastFrameIsSeen) {
    AutomationPass late = pass("Late", 40, 1000);
    late.events.append({999, ChannelKind::input(1), PassEventValue::switches({.chanMuted = true})});
    passes.load({late});
    view = open(0);
    view->resize(900, 500);
    settle();
    const QImage picture = view->viewport()->grab().toImage();
    const QColor lit = Look::of(ColorScheme::dark).tints.ledRed;
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = view->rulerRect().right() - 12; x <= view->rulerRect().right(); ++x)
            found += picture.pixelColor(x, y) == lit;
    EXPECT_GT(found, 0);
}

TEST_F(PassLanesViewTest, FollowsItsPassAndTheTape) {
    EXPECT_EQ(view->windowTitle(), QStringLiteral("Verse"));
    EXPECT_EQ(open(0), view) << "one window a pass";
    const QPointer<PassLanesView> other = open(1);
    EXPECT_NE(other, view);
    passes.rename(passes.passes.value()[0].id, QStringLiteral("Verse two"));
    settle();
    EXPECT_EQ(view->windowTitle(), QStringLiteral("Verse two"));
    engine.select(passes.passes.value()[1]);
    passes.remove(passes.passes.value()[1].id);
    settle();
    EXPECT_FALSE(other && other->isVisible());
    ASSERT_TRUE(view);

    const AutomationPass take = pass("Take", 40, 7);
    engine.restoreTake(take);
    const LaneObjects objects{passes, engine, labels, clock, transport, window.drawing()};
    const QPointer<PassLanesView> taken = &PassLanesView::open(take, objects, window.keys, &window);
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

    locate(480);
    for (int i = 0; i < 10; ++i)
        view->zoom(1.5, view->xOf(480) - view->rulerRect().x());
    const double before = view->timeline().firstOffset;
    roll(8s);
    EXPECT_GT(view->timeline().firstOffset, before) << "the page turned";
    EXPECT_GT(*view->tapeOffset(), view->timeline().firstOffset);
    EXPECT_LT(*view->tapeOffset(), lastVisible());
    stop();
    tape.setRate(MTCFrameRate::fps30);
    roll(1s);
    EXPECT_FALSE(view->tapeOffset()) << "another frame rate is nowhere in the pass";
}

TEST_F(PassLanesViewTest, WheelDragAndKeysZoomAndScroll) {
    const double whole = view->timeline().framesPerPixel;
    const QPoint at(600, 200);
    const double held = view->timeline().offsetAt(at.x() - view->rulerRect().x());
    turnWheel(at, 480);
    EXPECT_LT(view->timeline().framesPerPixel, whole / 2);
    EXPECT_NEAR(view->timeline().offsetAt(at.x() - view->rulerRect().x()), held, 1e-6);
    double first = view->timeline().firstOffset;
    turnWheel(at, -120, Qt::ShiftModifier);
    EXPECT_GT(view->timeline().firstOffset, first);

    first = view->timeline().firstOffset;
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseMove(view->viewport(), at + QPoint(50, 0));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, at + QPoint(50, 0));
    EXPECT_NEAR(view->timeline().firstOffset, first - 50 * view->timeline().framesPerPixel, 1e-6);

    QTest::keyClick(view, Qt::Key_End);
    EXPECT_NEAR(lastVisible(), 999, 20);
    QTest::keyClick(view, Qt::Key_Right);
    EXPECT_NEAR(lastVisible(), 999, 20) << "not past the end";
    QTest::keyClick(view, Qt::Key_Home);
    EXPECT_EQ(view->timeline().firstOffset, 0);
    QTest::keyClick(view, Qt::Key_Plus);
    QTest::keyClick(view, Qt::Key_Minus);
    for (int i = 0; i < 20; ++i)
        turnWheel(at, -480);
    EXPECT_DOUBLE_EQ(view->timeline().framesPerPixel, whole) << "never less than all";
    for (int i = 0; i < 40; ++i)
        turnWheel(at, 480);
    EXPECT_GE(view->timeline().framesPerPixel, 1 / 48.0);
}

} // namespace
} // namespace tessik::test
