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
            EXPECT_TRUE(strip(ChannelKind::input(24)).isVisible());
            EXPECT_EQ(strip(ChannelKind::input(25)).isVisible(), modelSize == ConsoleModel::ModelSize::ch32);
            for (ChannelState* channel : model.allVisibleChannels()) {
                ControlHost& host = strip(channel->kind);
                EXPECT_GE(host.width(), channel->kind.kind() == ChannelKind::Case::group ? 64 : 96);
                expectLaidOut(host);
                EXPECT_GE(host.mapTo(&desk, QPoint(0, host.height())).y(), desk.height() - Metrics::railHeight - 3);
                int lowest = 0;
                for (int i = 0; i < host.controlCount(); ++i)
                    lowest = std::max(lowest, host.controlRect(i).bottom());
                EXPECT_GE(lowest, host.height() - 12) << "the fader's block stays at the lower edge";
            }
            EXPECT_NEAR(strip(ChannelKind::group(8)).geometry().right(), desk.width() - 4, 4);
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
    EXPECT_FALSE(strip(ChannelKind::stereo()).isShown(control(strip(ChannelKind::stereo()), "eqOn")));
    window->resize(1366, 768);
    QApplication::processEvents();
    EXPECT_GE(inSight(), 10);

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
        for (const char* port : {"Desk", "Another maker's interface for the whole of the studio, port 16"}) {
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
    const std::tuple<QPoint, QPoint, int> turns[]{{{0, -120}, {}, pitch},
                                                  {{-120, 500}, {}, 2 * pitch}, // a sideways wheel counts for itself
                                                  {{0, 480}, {}, 0},            // no further than the edge
                                                  {{0, -10}, {0, -30}, 30},     // a touchpad counts pixels
                                                  {{0, -12'000}, {}, inputs().maxLeft()}};
    for (const auto& [angle, pixels, left] : turns) {
        wheel(under, under.rect().center(), angle, pixels);
        EXPECT_EQ(inputs().left(), left);
    }
    EXPECT_EQ(strip(ChannelKind::input(32)).geometry().right() + 1 - inputs().left(), inputs().width());
    window->resize(5000, 900);
    QApplication::processEvents();
    EXPECT_EQ(inputs().left(), 0) << "everything fits";
    EXPECT_EQ(model.channelState(ChannelKind::input(3))->faderValue.value(), 0) << "no fader moved under the wheel";
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
    QTest::keyClick(&host, Qt::Key_Left);
    EXPECT_TRUE(comesTo(pitch));
}

} // namespace
} // namespace tessik
