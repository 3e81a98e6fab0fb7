#include "Support/Shown.h"
#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/WindowFixture.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

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
    EXPECT_EQ(channel().faderValue.value(), 0);
    QTest::mouseMove(&host, QPoint(start.x(), rect.top() + 27 + (rect.height() - 54) / 2));
    EXPECT_EQ(channel().faderValue.value(), 64) << "the cap's centre follows the pointer, rounded";
    QTest::mouseMove(&host, QPoint(start.x() + 500, rect.top() - 300));
    QTest::mouseRelease(&host, Qt::LeftButton, {}, start);
    EXPECT_EQ(channel().faderValue.value(), 127);
    EXPECT_EQ(received, (std::vector<std::pair<int, int>>{{4, 0}, {4, 64}, {4, 127}}));
    EXPECT_EQ(channel().lastUpdate.value(), distantPast) << "the screen is no message from the desk";
    QTest::mouseMove(&host, start);
    EXPECT_EQ(channel().faderValue.value(), 127) << "released";
}

TEST_F(ChannelStripTest, ADragWhoseReleaseWentElsewhereIsOver) {
    ControlHost& host = strip(in5);
    QTest::mousePress(&host, Qt::LeftButton, {}, centre(host, "fader"));
    QTest::mouseMove(&host, centre(host, "fader") + QPoint(0, 20));
    const int value = channel().faderValue;
    ASSERT_NE(value, 0);
    const QPointF at = centre(host, "fader") - QPoint(0, 60);
    QMouseEvent hover(QEvent::MouseMove, at, host.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&host, &hover);
    EXPECT_EQ(channel().faderValue.value(), value);
}

TEST_F(ChannelStripTest, ClickingASwitchTurnsItAndTellsTheDesk) {
    const struct {
        const char* id;
        ChannelState::Switch field;
        int byte;
    } rows[]{{"monMuted", &ChannelState::monMuted, 62},
             {"auxMuted", &ChannelState::auxMuted, 61},
             {"chanMuted", &ChannelState::chanMuted, 31},
             {"eqOn", &ChannelState::eqOn, 59}};
    for (const ChannelKind kind : {in5, ChannelKind::group(3), ChannelKind::stereo()}) {
        ControlHost& host = strip(kind);
        const int cc = MIDIChannelMapping::switchCC(kind);
        for (const auto& row : rows) {
            if (host.controlIndex(QLatin1String(row.id)) < 0) continue; // an input's EQ is in its module
            received.clear();
            clock.advance(std::chrono::seconds(1)); // the cable is free again
            QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, row.id));
            EXPECT_TRUE((channel(kind).*row.field).value()) << row.id;
            QTest::mousePress(&host, Qt::LeftButton, {}, centre(host, row.id));
            QTest::mouseMove(&host, centre(host, "fader"));
            QTest::mouseRelease(&host, Qt::LeftButton, {}, centre(host, "fader"));
            EXPECT_TRUE((channel(kind).*row.field).value()) << "released outside " << row.id;
            QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, row.id));
            EXPECT_FALSE((channel(kind).*row.field).value()) << row.id;
            EXPECT_EQ(received, (std::vector<std::pair<int, int>>{{cc, row.byte}, {cc, 63}})) << row.id;
        }
    }
}

/// Writes down the keys that come as far as the window.
struct KeyWatch : QObject {
    QList<int> keys;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) keys << static_cast<QKeyEvent*>(event)->key();
        return false;
    }
};

TEST_F(ChannelStripTest, KeysOperateWhatHasTheFocusAndLeaveTheWindowsKeys) {
    ControlHost& host = strip(in5);
    press(host, "fader", Qt::Key_End);
    EXPECT_EQ(channel().faderValue.value(), 127);
    press(host, "fader", Qt::Key_Down);
    EXPECT_EQ(channel().faderValue.value(), 126);
    press(host, "chanMuted", Qt::Key_Up);
    press(host, "chanMuted", Qt::Key_Up);
    EXPECT_TRUE(channel().chanMuted.value());
    press(host, "chanMuted", Qt::Key_Down);
    EXPECT_FALSE(channel().chanMuted.value());
    window->keys.onLeft = window->keys.onRight = {}; // so that they go the common way
    KeyWatch reached;
    window->installEventFilter(&reached);
    const QList<int> windowKeys{Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_Return, Qt::Key_A};
    for (const int key : windowKeys)
        QTest::keyClick(&host, Qt::Key(key));
    EXPECT_EQ(reached.keys, windowKeys);
    reached.keys.clear();
    QTest::keyClick(&host, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(reached.keys, (QList<int>{Qt::Key_Control, Qt::Key_Up}));
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
    ASSERT_TRUE(group);
    EXPECT_EQ(group->text(QAccessible::Name), QStringLiteral("Channel 5"));
    ASSERT_EQ(group->childCount(), host.controlCount());

    const auto child = [&](const char* id) { return group->child(control(host, id)); };
    const struct {
        const char* id;
        QAccessible::Role role;
        const char *name, *value;
        bool checked;
    } rows[]{{"fader", QAccessible::Slider, "Channel 5, fader", "-∞ dB", false},
             {"auxMuted", QAccessible::CheckBox, "Channel 5, aux MUTE", "on", true},
             {"chanMuted", QAccessible::CheckBox, "Channel 5, MUTE", "off", false},
             {"null", QAccessible::StatusBar, "Channel 5, NULL", "no target", false},
             {"readout", QAccessible::StatusBar, "Channel 5, level", "-∞ dB", false}};
    for (const auto& row : rows) {
        QAccessibleInterface* one = child(row.id);
        EXPECT_EQ(one->role(), row.role) << row.id;
        EXPECT_EQ(one->text(QAccessible::Name), QLatin1String(row.name));
        EXPECT_EQ(one->text(QAccessible::Value), QString::fromUtf8(row.value));
        if (row.role == QAccessible::StatusBar) {
            EXPECT_EQ(one->text(QAccessible::Description), QString::fromUtf8(row.value)) << "a bus without text values";
        }
        EXPECT_EQ(one->state().checked, row.checked) << row.id;
        EXPECT_EQ(group->indexOfChild(one), control(host, row.id));
        const QPoint at = centre(host, row.id);
        QHelpEvent asked(QEvent::ToolTip, at, host.mapToGlobal(at));
        QApplication::sendEvent(&host, &asked);
        EXPECT_EQ(QToolTip::text(), QString::fromUtf8(row.name) + QStringLiteral(", ") + QString::fromUtf8(row.value));
        EXPECT_EQ(group->childAt(one->rect().center().x(), one->rect().center().y()), one) << row.id;
    }

    QAccessibleValueInterface* value = child("fader")->valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->maximumValue().toDouble(), 127);
    value->setCurrentValue(500);
    EXPECT_EQ(channel().faderValue.value(), 127);
    child("chanMuted")->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(channel().chanMuted.value());
    EXPECT_FALSE(child("null")->actionInterface()) << "only shows";
}

TEST_F(ChannelStripTest, NullArrowsSayWhichWay) {
    showFader(model, in5, 60);
    ControlHost& host = strip(in5);
    const QRect row = host.controlRect(control(host, "null"));
    const QPoint up(row.x() + row.width() / 4, row.center().y()), down(row.x() + row.width() * 3 / 4, row.center().y());
    const auto hue = [](const QColor& color) {
        if (color.value() < 80) return "dim";
        return color.hue() > 90 ? "green" : "yellow";
    };
    const struct {
        std::optional<int> target;
        const char *up, *down, *spoken;
    } rows[]{{std::nullopt, "dim", "dim", "no target"},
             {80, "yellow", "dim", "up, 6.5 dB"},
             {40, "dim", "yellow", "down, 9.6 dB"},
             {0, "dim", "yellow", "down, to -∞ dB"},
             {60, "green", "green", "matched"}};
    for (const AppTheme scheme : {AppTheme::dark, AppTheme::light}) {
        theme.setTheme(scheme);
        for (const auto& expected : rows) {
            model.setNullTarget(channel(), expected.target);
            const QImage picture = host.grab().toImage();
            EXPECT_STREQ(hue(picture.pixelColor(up)), expected.up) << expected.spoken;
            EXPECT_STREQ(hue(picture.pixelColor(down)), expected.down) << expected.spoken;
            EXPECT_EQ(host.valueText(control(host, "null")), QString::fromUtf8(expected.spoken));
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
    QApplication::processEvents();
    ControlHost& host = strip(in5);
    const QRect fader = host.controlRect(control(host, "fader"));
    const QRect mute = host.controlRect(control(host, "chanMuted"));
    const auto area = [](const QRegion& region) {
        int sum = 0;
        for (const QRect& rect : region)
            sum += rect.width() * rect.height();
        return sum;
    };

    showFader(model, in5, 64);
    QApplication::processEvents();
    ASSERT_EQ(watch.painted.keys(), QList<QObject*>{&host});
    QRegion region = watch.painted.take(&host);
    EXPECT_FALSE(region.intersects(QRect(fader.topLeft(), QSize(fader.width(), 40)))) << "the cap was never up there";
    EXPECT_TRUE(region.intersects(host.controlRect(control(host, "readout"))));
    EXPECT_LT(area(region), 2 * 52 * 78 + 84 * 22);

    showFader(model, in5, 64);
    showSwitches(model, in5, {});
    QApplication::processEvents();
    EXPECT_TRUE(watch.painted.isEmpty()) << "equal values paint nothing";

    showSwitches(model, in5, {.chanMuted = true});
    QApplication::processEvents();
    ASSERT_EQ(watch.painted.keys(), QList<QObject*>{&host});
    region = watch.painted.take(&host);
    EXPECT_TRUE(mute.adjusted(-9, -9, 9, 9).contains(region.boundingRect()));
}

TEST_F(ChannelStripTest, PartialPaintingGivesTheSamePictureAsPaintingAll) {
    ControlHost& host = strip(in5);
    QImage kept = host.grab().toImage();
    for (int i = 0; i < 40; ++i) {
        showFader(model, in5, (i * 37) % 128);
        showSwitches(model, in5, {.monMuted = i % 4 == 0, .chanMuted = i % 3 == 0});
        model.setNullTarget(channel(), i % 5 == 0 ? std::optional(channel().faderValue + i - 20) : std::nullopt);
        PaintWatch watch;
        host.installEventFilter(&watch);
        QApplication::processEvents();
        host.removeEventFilter(&watch);
        const QRegion painted = watch.painted[&host];
        host.render(&kept, painted.boundingRect().topLeft(), painted, {});
        ASSERT_EQ(kept, host.grab().toImage().convertToFormat(kept.format())) << "step " << i;
    }
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
