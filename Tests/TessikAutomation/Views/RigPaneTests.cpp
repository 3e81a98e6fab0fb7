#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/RigPane.h"
#include "TessikAutomation/Views/WindowFixture.h"
#include "TessikRig/SimulatedConsole.h"

namespace tessik {
namespace {

struct RigPaneTest : WindowTest {
    RigPaneTest() {
        show({1206, 608}); // as it first opens on a screen of 1366x768
        pane = new RigPane(desk, *window);
        settle();
    }
    ~RigPaneTest() override { window.reset(); }

    SimulatedConsole desk{service, clock};
    RigPane* pane;
};

TEST_F(RigPaneTest, DocksBelowTheDeskAndCoversNothing) {
    EXPECT_EQ(window->size(), QSize(1206, 608));
    const QRect view = window->centralWidget()->geometry();
    EXPECT_GE(pane->y(), view.bottom());
    EXPECT_LE(pane->geometry().bottom(), window->rect().bottom());
    EXPECT_LE(pane->surface().geometry().right(), pane->rect().right());
    EXPECT_GE(window->desk().height(), Metrics::minStripHeight + Metrics::railHeight);
    EXPECT_LE(window->desk().mapTo(window->centralWidget(), window->desk().rect().bottomRight()).y(), view.height());
}

TEST_F(RigPaneTest, IsTheHandOnTheDesk) {
    ControlHost& surface = pane->surface();
    const ChannelKind in5 = ChannelKind::input(5);
    const QRect fader = surface.controlRect(surface.controlIndex(QStringLiteral("fader.") + in5.id()));
    QTest::mousePress(&surface, Qt::LeftButton, {}, fader.center());
    QTest::mouseMove(&surface, QPoint(fader.center().x(), fader.top() - 20));
    QTest::mouseRelease(&surface, Qt::LeftButton, {}, fader.center());
    EXPECT_EQ(desk.physicalFader(in5), 127);
    EXPECT_EQ(desk.vca(in5), 127);
    const int mute = surface.controlIndex(QStringLiteral("mute.") + in5.id());
    QTest::mouseClick(&surface, Qt::LeftButton, {}, surface.controlRect(mute).center());
    EXPECT_TRUE(desk.switches(in5).chanMuted);
    EXPECT_EQ(surface.valueText(mute), QStringLiteral("on"));
}

TEST_F(RigPaneTest, ItsPlaceIsRemembered) {
    pane->setFloating(true);
    settle();
    window->close();
    window.reset();
    show();
    pane = new RigPane(desk, *window);
    EXPECT_FALSE(pane->isFloating());
    window->restorePlace();
    EXPECT_TRUE(pane->isFloating());
}

} // namespace
} // namespace tessik
