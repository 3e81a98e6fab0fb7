#include "Support/Shown.h"
#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/WindowFixture.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

#include <numeric>

namespace tessik {
namespace {

const ChannelKind in5 = ChannelKind::input(5);

struct ChannelStripTest : WindowTest {
    ChannelStripTest() {
        output.selectDestination(destinationID());
        show();
    }
    ChannelState& channel(ChannelKind kind = in5) { return *model.channelState(kind); }
    void press(ControlHost& host, const char* id, Qt::Key key) {
        host.focusControl(control(host, id), Qt::TabFocusReason);
        QTest::keyClick(&host, key);
    }
};

TEST_F(ChannelStripTest, DraggingAFaderMovesTheModelAndTheDesk) {
    ControlHost& host = strip(in5);
    showFader(model, in5, 100);
    const QRect rect = host.controlRect(control(host, "fader"));
    const QPoint start = rect.center();
    QTest::mousePress(&host, Qt::LeftButton, {}, start);
    QTest::mouseMove(&host, start + QPoint(1, 1));
    EXPECT_EQ(channel().faderValue.value(), 100) << "a click with a trembling hand leaves a fader alone";
    QTest::mouseMove(&host, QPoint(start.x(), rect.bottom() + 300));
    QTest::mouseMove(&host, QPoint(start.x(), rect.top() + 27 + (rect.height() - 54) / 2));
    EXPECT_EQ(channel().faderValue.value(), 64) << "the cap's centre follows the pointer, rounded";
    QTest::mouseMove(&host, QPoint(start.x() + 500, rect.top() - 300));
    EXPECT_EQ(received, (std::vector<std::pair<int, int>>{{4, 0}, {4, 64}, {4, 127}}));
    EXPECT_EQ(channel().lastUpdate.value(), distantPast) << "the screen is no message from the desk";
    QMouseEvent hover(QEvent::MouseMove, start, host.mapToGlobal(start), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&host, &hover);
    EXPECT_EQ(channel().faderValue.value(), 127) << "the release went elsewhere";
}

TEST_F(ChannelStripTest, ClickingASwitchTurnsItAndTellsTheDesk) {
    const std::tuple<const char*, ChannelState::Switch, int> rows[]{{"monMuted", &ChannelState::monMuted, 62},
                                                                    {"auxMuted", &ChannelState::auxMuted, 61},
                                                                    {"chanMuted", &ChannelState::chanMuted, 31},
                                                                    {"eqOn", &ChannelState::eqOn, 59}};
    for (const ChannelKind kind : {in5, ChannelKind::group(3), ChannelKind::stereo()}) {
        ControlHost& host = strip(kind);
        const int cc = MIDIChannelMapping::switchCC(kind);
        for (const auto& [id, field, byte] : rows) {
            if (host.controlIndex(QLatin1String(id)) < 0) continue; // an input's EQ is in its module
            received.clear();
            clock.advance(std::chrono::seconds(1)); // the cable is free again
            QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, id));
            QTest::mousePress(&host, Qt::LeftButton, {}, centre(host, id));
            QTest::mouseMove(&host, centre(host, "fader"));
            QTest::mouseRelease(&host, Qt::LeftButton, {}, centre(host, "fader"));
            EXPECT_TRUE((channel(kind).*field).value()) << "released outside " << id;
            QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, id));
            EXPECT_EQ(received, (std::vector<std::pair<int, int>>{{cc, byte}, {cc, 63}})) << id;
        }
    }
}

TEST_F(ChannelStripTest, KeysOperateWhatHasTheFocusAndLeaveTheWindowsKeys) {
    ControlHost& host = strip(in5);
    press(host, "fader", Qt::Key_End);
    press(host, "fader", Qt::Key_Down);
    EXPECT_EQ(channel().faderValue.value(), 126);
    press(host, "chanMuted", Qt::Key_Up);
    press(host, "chanMuted", Qt::Key_Up);
    EXPECT_TRUE(channel().chanMuted.value());
    press(host, "chanMuted", Qt::Key_Down);
    EXPECT_FALSE(channel().chanMuted.value());
    for (const QKeyEvent& other : {QKeyEvent(QEvent::KeyPress, Qt::Key_Up, Qt::ControlModifier),
                                   QKeyEvent(QEvent::KeyPress, Qt::Key_Space, {}, QStringLiteral(" ")),
                                   QKeyEvent(QEvent::KeyPress, Qt::Key_A, {}, QStringLiteral("a"))}) {
        const std::unique_ptr<QKeyEvent> event(other.clone());
        static_cast<QObject&>(host).event(event.get());
        EXPECT_FALSE(event->isAccepted()) << other.key();
    }
    EXPECT_FALSE(channel().chanMuted.value());
}

TEST_F(ChannelStripTest, TabGoesOverEveryControlOfTheConsoleAndBack) {
    QStringList expected;
    const auto add = [&](const ControlHost& host) {
        for (int i = 0; i < host.controlCount(); ++i)
            if (host.isOperable(i)) expected << host.name(i);
    };
    for (const ChannelState* state : model.inputs()) {
        add(*window->desk().inputModule(int(state->kind.number())));
        add(strip(state->kind));
    }
    add(*window->desk().master());
    add(strip(ChannelKind::stereo()));
    for (const ChannelState* state : model.groups())
        add(strip(state->kind));
    ASSERT_GT(expected.size(), 1300);

    ControlHost& first = *window->desk().inputModule(1);
    first.focusControl(control(first, "phantomPower"), Qt::TabFocusReason);
    const auto walk = [&](Qt::Key key) {
        QStringList names;
        while (names.size() < expected.size()) {
            auto* host = qobject_cast<ControlHost*>(QApplication::focusWidget());
            if (!host || host->focusedControl() < 0) break;
            names << host->name(host->focusedControl());
            if (names.size() < expected.size()) QTest::keyClick(host, key);
        }
        return names;
    };
    EXPECT_EQ(walk(Qt::Key_Tab), expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(walk(Qt::Key_Backtab), expected);
}

TEST_F(ChannelStripTest, FocusBringsAStripIntoViewAndShowsItself) {
    ControlHost& host = strip(ChannelKind::input(32));
    ASSERT_GT(host.x(), window->desk().inputs().width());
    const QImage before = host.grab().toImage();
    host.focusControl(control(host, "fader"), Qt::TabFocusReason);
    EXPECT_NE(host.grab().toImage(), before);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->desk().inputs().left() == window->desk().inputs().maxLeft(); }));
    host.focusControl(control(host, "fader"), Qt::MouseFocusReason);
    EXPECT_EQ(host.grab().toImage(), before) << "a click shows no ring";
}

TEST_F(ChannelStripTest, ScreenReadersAndToolTipsTellEachControl) {
    showFader(model, in5, 0);
    showSwitches(model, in5, {.auxMuted = true});
    ControlHost& host = strip(in5);
    QAccessibleInterface* group = QAccessible::queryAccessibleInterface(&host);
    EXPECT_EQ(group->text(QAccessible::Name), QStringLiteral("Channel 5"));
    ASSERT_EQ(group->childCount(), host.controlCount());
    const auto child = [&](const char* id) { return group->child(control(host, id)); };
    const std::tuple<const char*, QAccessible::Role, const char*, const char*> rows[]{
        {"fader", QAccessible::Slider, "Channel 5, fader", "-∞ dB"},
        {"auxMuted", QAccessible::CheckBox, "Channel 5, aux MUTE", "on"},
        {"chanMuted", QAccessible::CheckBox, "Channel 5, MUTE", "off"},
        {"null", QAccessible::StatusBar, "Channel 5, NULL", "no target"}};
    for (const auto& [id, role, name, value] : rows) {
        QAccessibleInterface* one = child(id);
        EXPECT_EQ(one->role(), role) << id;
        EXPECT_EQ(one->text(QAccessible::Name), QLatin1String(name));
        EXPECT_EQ(one->text(QAccessible::Value), QString::fromUtf8(value));
        if (role == QAccessible::StatusBar) {
            EXPECT_EQ(one->text(QAccessible::Description), QString::fromUtf8(value)) << "a bus without text values";
        }
        EXPECT_EQ(one->state().checked, QLatin1String(value) == QLatin1String("on")) << id;
        EXPECT_EQ(group->indexOfChild(one), control(host, id));
        const QPoint at = centre(host, id);
        QHelpEvent asked(QEvent::ToolTip, at, host.mapToGlobal(at));
        QApplication::sendEvent(&host, &asked);
        EXPECT_EQ(QToolTip::text(), QString::fromUtf8(name) + QStringLiteral(", ") + QString::fromUtf8(value));
        EXPECT_EQ(group->childAt(one->rect().center().x(), one->rect().center().y()), one) << id;
    }
    child("fader")->valueInterface()->setCurrentValue(500);
    EXPECT_EQ(channel().faderValue.value(), 127);
    child("chanMuted")->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(channel().chanMuted.value());
    EXPECT_FALSE(child("null")->actionInterface()) << "only shows";
}

TEST_F(ChannelStripTest, NullArrowsSayWhichWay) {
    showFader(model, in5, 60);
    ControlHost& host = strip(in5);
    const QRect row = host.controlRect(control(host, "null"));
    const auto hue = [](const QColor& color) {
        return color.value() < 80 ? "dim" : color.hue() > 90 ? "green" : "yellow";
    };
    const std::tuple<std::optional<int>, const char*, const char*, const char*> rows[]{
        // target, up, down, spoken
        {std::nullopt, "dim", "dim", "no target"},
        {80, "yellow", "dim", "up, 6.5 dB"},
        {0, "dim", "yellow", "down, to -∞ dB"},
        {60, "green", "green", "matched"}};
    for (const AppTheme scheme : {AppTheme::dark, AppTheme::light}) {
        theme.setTheme(scheme);
        for (const auto& [target, up, down, spoken] : rows) {
            model.setNullTarget(channel(), target);
            const QImage picture = host.grab().toImage();
            EXPECT_STREQ(hue(picture.pixelColor(row.x() + row.width() / 4, row.center().y())), up) << spoken;
            EXPECT_STREQ(hue(picture.pixelColor(row.x() + row.width() * 3 / 4, row.center().y())), down) << spoken;
            EXPECT_EQ(host.valueText(control(host, "null")), QString::fromUtf8(spoken));
        }
    }
}

/// Writes down which strips are painted, and where.
struct PaintWatch : QObject {
    QHash<QObject*, QRegion> painted;
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint) painted[object] += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

TEST_F(ChannelStripTest, AChangePaintsWhatChangedAndNothingElse) {
    PaintWatch watch;
    for (ChannelState* state : model.allVisibleChannels())
        strip(state->kind).installEventFilter(&watch);
    ControlHost& host = strip(in5);
    QImage kept = host.grab().toImage();
    const auto painted = [&] { // with the picture as the screen has it then
        watch.painted.clear();
        QApplication::processEvents();
        EXPECT_LE(watch.painted.size(), 1);
        const QRegion region = watch.painted[&host];
        host.render(&kept, region.boundingRect().topLeft(), region, {});
        return region;
    };
    painted();
    for (int i = 0; i < 40; ++i) {
        showFader(model, in5, (i * 37) % 128);
        showSwitches(model, in5, {.monMuted = i % 4 == 0, .chanMuted = i % 3 == 0});
        model.setNullTarget(channel(), i % 5 == 0 ? std::optional(channel().faderValue + i - 20) : std::nullopt);
        painted();
        ASSERT_EQ(kept, host.grab().toImage().convertToFormat(kept.format())) << "step " << i;
    }
    model.played(MIDIChannelMapping::faderCC(in5), channel().faderValue, false); // an equal value, heard of again
    EXPECT_TRUE(painted().isEmpty());
    showSwitches(model, in5, channel().switchesWith(&ChannelState::chanMuted, !channel().chanMuted));
    const QRect mute = host.controlRect(control(host, "chanMuted"));
    EXPECT_TRUE(mute.adjusted(-9, -9, 9, 9).contains(painted().boundingRect()));
    showFader(model, in5, 0);
    painted();
    showFader(model, in5, 64);
    const QRegion moved = painted();
    const int area = std::accumulate(moved.begin(), moved.end(), 0,
                                     [](int sum, const QRect& rect) { return sum + rect.width() * rect.height(); });
    EXPECT_LT(area, 2 * 52 * 78 + 84 * 22) << "the cap in both places, and the readout";
}

TEST(ConsoleToggleTest, TheLampOfALowKeyKeepsClearOfItsLegend) {
    DrawingContext drawing;
    const Look& look = Look::of(ColorScheme::dark);
    for (const int height : {17, 19, 27}) {
        QImage picture(48, height, QImage::Format_RGB32);
        QPainter painter(&picture);
        Canvas canvas(painter, 1, look, drawing);
        ConsoleToggle(QStringLiteral("HHHH"), &Tints::ledGreen, true).paintStatic(canvas, picture.rect());
        painter.end();
        int lampEnd = 0, legendTop = height;
        for (int y = 2; y < height - 2; ++y) {
            if (picture.pixelColor(24, y).saturation() > 100) lampEnd = y + 1; // its rim is one more
            for (int x = 4; x < 44; ++x)
                if (picture.pixelColor(x, y).lightness() > 110) legendTop = std::min(legendTop, y);
        }
        EXPECT_GT(lampEnd, 0) << height;
        EXPECT_GT(legendTop, lampEnd + 1) << height;
    }
}

} // namespace
} // namespace tessik
