#include "TessikAutomation/Views/Drawing/DrawnText.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/WindowFixture.h"

namespace tessik {
namespace {

struct ZoomTest : WindowTest {};

TEST_F(ZoomTest, EverySizeShowsEveryControlAndFollowsTheHand) {
    show({1600, 900});
    int smallest = 100;
    Type::onDraw = [&smallest](const QString&, const QFont& font) { smallest = std::min(smallest, font.pixelSize()); };
    DeskView& desk = window->desk();
    const ChannelKind in1 = ChannelKind::input(1);
    ControlHost& fader = strip(in1);
    for (const bool isFolded : {false, true})
        for (const int percent : DeskView::zoomSteps) {
            SCOPED_TRACE(percent);
            desk.isFolded = isFolded;
            desk.setZoom(percent);
            std::vector<ControlHost*> hosts{desk.strip(in1), desk.strip(ChannelKind::group(1)),
                                            desk.strip(ChannelKind::group(8)), desk.strip(ChannelKind::stereo())};
            if (!isFolded) hosts.insert(hosts.end(), {desk.inputModule(1), desk.master()});
            for (ControlHost* host : hosts)
                expectLaidOut(*host, 1);
            window->grab();
            const QRect rect = fader.controlRect(control(fader, "fader"));
            EXPECT_EQ(strip(ChannelKind::group(8)).controlRect(control(strip(ChannelKind::group(8)), "fader")).top(),
                      rect.top());
            EXPECT_LE(strip(ChannelKind::group(8)).geometry().right(), desk.width());
            EXPECT_GE(strip(ChannelKind::group(8)).geometry().bottom(), desk.height() - Metrics::railHeight - 4);
            EXPECT_EQ(desk.moduleView().height(), fader.y());
            QTest::mousePress(&fader, Qt::LeftButton, {}, rect.center());
            QTest::mouseMove(&fader, rect.center() - QPoint(0, 9));
            QTest::mouseMove(&fader, rect.center());
            QTest::mouseRelease(&fader, Qt::LeftButton, {}, rect.center());
            EXPECT_NEAR(model.channelState(in1)->faderValue.value(), 64, 1);
        }
    Type::onDraw = nullptr;
    EXPECT_GE(smallest, 8) << "smaller print cannot be read";
}

TEST_F(ZoomTest, StepsByKeysAndIsRememberedOnThisMachine) {
    show();
    window->activateWindow();
    const auto expect = [&](Qt::Key key, int percent) {
        QTest::keyClick(window.get(), key, Qt::ControlModifier);
        EXPECT_EQ(window->desk().zoom(), percent);
    };
    expect(Qt::Key_Plus, 125);
    expect(Qt::Key_Equal, 150);
    expect(Qt::Key_Plus, 150);
    show();
    EXPECT_EQ(window->desk().zoom(), 150);
    window->activateWindow();
    expect(Qt::Key_0, 100);
    expect(Qt::Key_Minus, 88);
    expect(Qt::Key_Minus, 88);
    SavedSettings::setString(SavedSettings::Key::deskZoom, QStringLiteral("large"));
    show();
    EXPECT_EQ(window->desk().zoom(), 100);
}

TEST_F(ZoomTest, TheModulesScrollWhereTheWindowIsLowAndTheFadersGrowWhereItIsHigh) {
    show({1366, 768});
    VerticalOnlyScrollView& modules = window->desk().moduleView();
    EXPECT_TRUE(modules.scrollBar()->isVisible());
    ControlHost& module = *window->desk().inputModule(4);
    module.focusControl(control(module, "manualMute"), Qt::TabFocusReason);
    const int bottom = module.mapTo(&modules, module.controlRect(control(module, "manualMute")).bottomRight()).y();
    EXPECT_LT(bottom, modules.height()) << "the keyboard brings a control into view";
    ControlHost& host = strip(ChannelKind::input(1));
    const int low = host.controlRect(control(host, "fader")).height();
    window->resize(2560, 1440);
    QApplication::processEvents();
    EXPECT_FALSE(modules.scrollBar()->isVisible());
    EXPECT_EQ(modules.top(), 0);
    EXPECT_GT(host.controlRect(control(host, "fader")).height(), 2 * low);
}

} // namespace
} // namespace tessik
