#include "Support/Shown.h"
#include "TessikAutomation/Views/Drawing/DrawnText.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/WindowFixture.h"

#include <QAbstractButton>

namespace tessik {
namespace {

struct DeskViewTest : WindowTest {
    HorizontalOnlyScrollView& inputs() { return window->desk().inputs(); }
};

TEST_F(DeskViewTest, ShowsTheInputsOfTheConsolesSizeAndNothingIsCutOff) {
    for (const QSize size :
         {QSize(1366, 768), QSize(1600, 900), QSize(2560, 1440), QSize(3840, 1600), QSize(1040, 560)}) {
        show(size);
        for (const ConsoleModel::ModelSize modelSize : ConsoleModel::allModelSizes) {
            model.modelSize = modelSize;
            QApplication::processEvents();
            DeskView& desk = window->desk();
            int shown = 0;
            for (ChannelState* channel : model.inputs())
                shown += strip(channel->kind).isVisible();
            EXPECT_EQ(shown, ConsoleModel::inputCount(modelSize));
            for (ChannelState* channel : model.allVisibleChannels()) {
                ControlHost& host = strip(channel->kind);
                EXPECT_GE(host.width(), channel->kind.kind() == ChannelKind::Case::group ? 64 : 96);
                expectLaidOut(host);
                EXPECT_EQ(host.y() % 4 + host.height() % 4, 0);
                EXPECT_GE(host.mapTo(&desk, QPoint(0, host.height())).y(), desk.height() - Metrics::railHeight - 3);
                int lowest = 0;
                for (int i = 0; i < host.controlCount(); ++i)
                    lowest = std::max(lowest, host.controlRect(i).bottom());
                EXPECT_GE(lowest, host.height() - 12) << "the fader's block stays at the lower edge";
                EXPECT_GE(host.controlRect(control(host, "fader")).height(), Metrics::minFaderHeight);
            }
            const ControlHost& last = strip(ChannelKind::group(8));
            EXPECT_LE(last.geometry().right(), desk.width());
            EXPECT_GE(last.geometry().right(), desk.width() - 8);
        }
    }
}

TEST_F(DeskViewTest, FoldingTheMasterSectionBringsMoreInputsIntoSight) {
    const auto inSight = [this] {
        const QRect view(inputs().mapTo(window.get(), QPoint()), inputs().size());
        int whole = 0;
        for (ChannelState* channel : model.inputs()) {
            const ControlHost& host = strip(channel->kind);
            whole += view.contains(QRect(host.mapTo(window.get(), QPoint()), host.size()));
        }
        return whole;
    };
    show({1600, 900});
    DeskView& desk = window->desk();
    auto& key = *desk.findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
    const int unfolded = inSight();
    QTest::mouseClick(&key, Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_GE(inSight(), 13) << "of " << unfolded;
    EXPECT_TRUE(window->foldAction()->isChecked());
    EXPECT_FALSE(desk.master()->isVisible());
    window->resize(1366, 768);
    QApplication::processEvents();
    EXPECT_GE(inSight(), 10);

    for (const int percent : DeskView::zoomSteps) {
        SCOPED_TRACE(percent);
        desk.setZoom(percent);
        for (const ChannelKind kind : {ChannelKind::stereo(), ChannelKind::group(1), ChannelKind::group(8)}) {
            ControlHost& host = strip(kind);
            expectLaidOut(host, 1);
            EXPECT_FALSE(host.isShown(control(host, "eqOn")));
            const QRect fader = host.controlRect(control(host, "fader"));
            QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, "chanMuted"));
            EXPECT_TRUE(model.channelState(kind)->chanMuted.value());
            QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, "chanMuted"));
            EXPECT_EQ(fader.top(),
                      strip(ChannelKind::input(1)).controlRect(control(strip(ChannelKind::input(1)), "fader")).top());
        }
        EXPECT_LE(strip(ChannelKind::group(8)).geometry().right(), desk.width());
    }
    window->desk().setZoom(100);
    show({1600, 900});
    EXPECT_TRUE(window->desk().isFolded.value()) << "remembered on this machine";
    window->foldAction()->trigger();
    QApplication::processEvents();
    EXPECT_EQ(inSight(), unfolded);
    EXPECT_TRUE(window->desk().master()->isVisible());
}

TEST_F(DeskViewTest, TheStatusIsWholeBesideAFoldedMasterSection) {
    show();
    window->desk().isFolded = true;
    QStringList drawn;
    Type::onDraw = [&drawn](const QString& text, const QFont&) { drawn.append(text); };
    for (const int width : {1366, 1024})
        for (const char* port : {"Desk", "Rig Console", "MIDI Interface 8x8 Port 3",
                                 "Another maker's interface for the whole of the studio, port 16"}) {
            const QString status = QStringLiteral("Output: ") + QLatin1String(port);
            window->resize(width, 768);
            MIDIEndpointRef in = 0;
            service.createDestination(far.client, QLatin1String(port), {}, in);
            output.refreshDestinations();
            output.selectDestination(service.destinations().back().uniqueID);
            ASSERT_EQ(output.port.statusText.value(), status);
            QApplication::processEvents();
            drawn.clear();
            window->desk().grab();
            EXPECT_TRUE(drawn.contains(QStringLiteral("MIDI Out — ") + status)) << port;
            EXPECT_TRUE(drawn.contains(QStringLiteral("MIDI In — ") + manager.connection.statusText.value())) << port;
        }
    Type::onDraw = nullptr;
}

TEST_F(DeskViewTest, TheWheelMovesTheInputsSidewaysByOneStripANotch) {
    show();
    const int pitch = Metrics::inputChannelStripWidth + Metrics::channelStripSpacing;
    ControlHost& under = strip(ChannelKind::input(3));
    const auto wheel = [&](QPoint angle, QPoint pixels = {}) {
        WindowTest::wheel(under, under.rect().center(), angle, pixels);
    };
    showFader(model, ChannelKind::input(3), 50);
    wheel({0, -120});
    EXPECT_EQ(inputs().left(), pitch);
    wheel({-120, 500}); // a sideways wheel counts for itself
    EXPECT_EQ(inputs().left(), 2 * pitch);
    wheel({0, 240});
    wheel({0, 240});
    EXPECT_EQ(inputs().left(), 0) << "no further than the edge";
    wheel({0, -10}, {0, -30}); // a touchpad counts pixels
    EXPECT_EQ(inputs().left(), 30);
    for (int i = 0; i < 100; ++i)
        wheel({0, -120});
    EXPECT_EQ(inputs().left(), inputs().maxLeft());
    EXPECT_EQ(strip(ChannelKind::input(32)).geometry().right() + 1 - inputs().left(), inputs().width());
    EXPECT_EQ(model.channelState(ChannelKind::input(3))->faderValue.value(), 50) << "no fader moved under the wheel";
}

TEST_F(DeskViewTest, ArrowKeysMoveByOneStripWhateverHasTheFocus) {
    show();
    const int pitch = inputs().scrollBar()->singleStep();
    ControlHost& host = strip(ChannelKind::input(2));
    host.focusControl(control(host, "fader"), Qt::MouseFocusReason);
    const auto comesTo = [&](int left) { return QTest::qWaitFor([&, left] { return inputs().left() == left; }); };
    QTest::keyClick(&host, Qt::Key_Right);
    QTest::keyClick(window.get(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(comesTo(2 * pitch)) << "the second press adds to the first, though that is still on its way";
    QTest::keyClick(&host, Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&host, Qt::Key_Left);
    EXPECT_TRUE(comesTo(pitch));
}

TEST_F(DeskViewTest, ScrollToAndRevealStayWithinWhatThereIs) {
    show();
    const int page = inputs().width();
    inputs().scrollTo(-50);
    EXPECT_EQ(inputs().left(), 0);
    inputs().scrollTo(1'000'000);
    EXPECT_EQ(inputs().left(), inputs().maxLeft());
    inputs().scrollTo(400);
    const struct {
        int x, width, left;
    } rows[]{{400, 88, 400}, {400 + page - 88, 88, 400}, {300, 88, 300}, {400 + page, 88, 488}};
    for (const auto& row : rows) {
        inputs().scrollTo(400);
        inputs().reveal(row.x, row.width);
        EXPECT_EQ(inputs().left(), row.left) << row.x;
    }
    model.modelSize = ConsoleModel::ModelSize::ch24;
    window->resize(3840, 900);
    QApplication::processEvents();
    EXPECT_EQ(inputs().left(), 0) << "everything fits";
}

TEST_F(DeskViewTest, AThemeChangeRepaintsEverythingInTheOtherPalette) {
    show();
    const auto panel = [this] {
        ControlHost& host = strip(ChannelKind::group(1));
        return host.grab().toImage().pixelColor(host.width() / 4, host.height() - 3).lightness();
    };
    EXPECT_LT(panel(), 60);
    theme.setTheme(AppTheme::light);
    EXPECT_GT(panel(), 150);
    EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 150);
}

} // namespace
} // namespace tessik
