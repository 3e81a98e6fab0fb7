#include "Support/CleanSettings.h"
#include "Support/TapeFixture.h"
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Transport/LocatorRow.h"
#include "TessikAutomation/Views/Transport/TimecodeCounter.h"
#include "TessikAutomation/Views/Transport/TimecodeText.h"
#include "TessikAutomation/Views/Transport/TransportPanelView.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using enum MTCFrameRate;
using State = SimulatedRecorder::State;

/// The panel, with the rig's recorder at the other end of both cables.
struct TransportPanelTest : testing::Test, CleanSettings {
    test::Tape tape{{.rate = fps25, .deviceID = 0}};
    LocatorStore locators;
    TransportManager transport{tape.service};
    std::optional<TimecodePosition> passEnd;
    QUndoStack history;
    TransportPanelView panel{tape.clock, locators, transport, history, [this] { return passEnd; }};
    TimecodeCounter* counter = panel.findChild<TimecodeCounter*>();

    void connectTransport() { transport.selectDestination(tape.service.destinations().front().uniqueID); }
    PanelButton& key(const char* name) const {
        for (PanelButton* button : panel.findChildren<PanelButton*>())
            if (button->accessibleName() == QLatin1String(name)) return *button;
        ADD_FAILURE() << "no key " << name;
        return panel.startRow().captureKey();
    }
    QString where() { return tape.recorder.label(tape.uptime.now()).displayString(); }
    /// A colour of the counter that is far from grey and black, if there is one.
    QColor lit() const {
        const QImage picture = counter->grab().toImage();
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixelColor(x, y).hsvSaturation() > 80 && picture.pixelColor(x, y).value() > 200)
                    return picture.pixelColor(x, y);
        return {};
    }
};

TEST_F(TransportPanelTest, CounterTellsWhatTheClockDoes) {
    EXPECT_EQ(counter->timeText(), QStringLiteral("--:--:--:--"));
    EXPECT_EQ(counter->lockText(), QStringLiteral("NO TIMECODE"));
    EXPECT_EQ(counter->rateText(), QString());
    EXPECT_FALSE(lit().isValid());
    tape.recorder.locate({.hours = 1});
    tape.recorder.play();
    tape.roll(1020ms);
    EXPECT_EQ(counter->timeText(), QStringLiteral("01:00:00:24"));
    EXPECT_EQ(counter->lockText(), QStringLiteral("LOCKED"));
    EXPECT_EQ(counter->rateText(), QStringLiteral("25 fps"));
    ASSERT_TRUE(lit().isValid());
    EXPECT_NEAR(lit().hsvHue(), 120, 30);
    const QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(counter);
    EXPECT_EQ(reader->text(QAccessible::Value), QStringLiteral("01:00:00:24 LOCKED 25 fps"));
    tape.recorder.stop();
    tape.roll(1s);
    EXPECT_EQ(counter->timeText(), QStringLiteral("01:00:00:24")) << "frozen";
    EXPECT_EQ(counter->lockText(), QStringLiteral("NO TIMECODE"));
    EXPECT_FALSE(lit().isValid());
    tape.clock.handleFullFrame({fps30Drop, 31, 127, 127, 127}); // wider than the display: shown all the same
    EXPECT_EQ(counter->timeText(), QStringLiteral("31:127:127:127"));
    EXPECT_EQ(counter->rateText(), QStringLiteral("29.97 fps (drop)"));
    counter->grab();
}

TEST_F(TransportPanelTest, LocatorRowsOfferWhatCanBeDone) {
    struct Case {
        const char* label;
        LocatorRow& row;
    };
    for (const Case& c : {Case{"start", panel.startRow()}, Case{"end", panel.endRow()}}) {
        SCOPED_TRACE(c.label);
        const QString label = QLatin1String(c.label);
        transport.selectDestination(std::nullopt);
        panel.refresh();
        EXPECT_FALSE(c.row.field().isEnabled());
        EXPECT_EQ(c.row.captureKey().isEnabled(), tape.clock.currentPosition.value().has_value());
        EXPECT_FALSE(c.row.clearKey().isEnabled());
        EXPECT_EQ(c.row.field().text(), QStringLiteral("--:--:--:--"));
        EXPECT_EQ(c.row.field().toolTip(), QStringLiteral("Set ") + label + QStringLiteral(" first"));
        tape.clock.handleFullFrame({fps25, 1, 2, 3, 4});
        ASSERT_TRUE(c.row.captureKey().isEnabled());
        c.row.captureKey().click();
        EXPECT_EQ(c.row.field().text(), QStringLiteral("01:02:03:04"));
        EXPECT_FALSE(c.row.field().isEnabled());
        EXPECT_EQ(c.row.field().toolTip(), QStringLiteral("Select a transport device first"));
        connectTransport();
        EXPECT_EQ(c.row.field().toolTip(), QStringLiteral("Locate transport to ") + label);
        c.row.field().click();
        EXPECT_EQ(where(), QStringLiteral("01:02:03:04"));
        tape.recorder.locate({});
        tape.service.unplug(SimulatedRecorder::portName);
        QCoreApplication::sendPostedEvents();
        EXPECT_FALSE(c.row.field().isEnabled()) << "the recorder is gone";
        tape.service.plug(SimulatedRecorder::portName);
        QCoreApplication::sendPostedEvents();
        EXPECT_TRUE(c.row.field().isEnabled());
        c.row.clearKey().click();
        EXPECT_FALSE(c.row.clearKey().isEnabled());
    }
    EXPECT_EQ(locators.start.value(), std::nullopt);
    EXPECT_EQ(locators.end.value(), std::nullopt);
    history.undo();
    EXPECT_TRUE(locators.end.value()) << "what was cleared comes back";
    EXPECT_FALSE(locators.start.value());
    while (history.canUndo())
        history.undo();
    EXPECT_FALSE(locators.start.value() || locators.end.value()) << "and what was set goes";
    history.setIndex(history.count());
}

TEST_F(TransportPanelTest, ALocatorCanBeTypedAndWhatIsWrongStaysToBeMended) {
    panel.show();
    panel.activateWindow();
    LocatorRow& row = panel.endRow();
    const auto entry = [&row]() -> EntryField* {
        for (EntryField* each : row.findChildren<EntryField*>())
            if (each->isVisible()) return each;
        return nullptr;
    };
    const auto problem = [this] {
        const auto* label = panel.findChild<QLabel*>(QStringLiteral("positionProblem"));
        return label ? label->text() : QString();
    };
    // At the rate of the locator, else of the timecode, and before that of 30 fps.
    row.setFocus();
    QTest::keyClick(&row, Qt::Key_F2);
    QTest::keyClicks(entry(), QStringLiteral("1:02:03:29"));
    QTest::keyClick(entry(), Qt::Key_Return);
    EXPECT_EQ(locators.end.value(), (TimecodePosition{fps30, 1, 2, 3, 29}));
    tape.clock.handleFullFrame({fps25, 1, 2, 3, 4});
    locators.setEnd(std::nullopt);

    row.edit();
    const std::pair<const char*, const char*> wrong[]{{"1:60:00:00", "Minutes go from 0 to 59"},
                                                      {"01:02:03:25", "Frames go from 0 to 24 at 25 fps"},
                                                      {"1:2", "Type hours, minutes, seconds and frames: 01:02:03:04"},
                                                      {"soon", "Type hours, minutes, seconds and frames: 01:02:03:04"}};
    for (const auto& [text, why] : wrong) {
        entry()->selectAll();
        QTest::keyClicks(entry(), QLatin1String(text));
        EXPECT_EQ(problem(), QString());
        QTest::keyClick(entry(), Qt::Key_Return);
        EXPECT_EQ(problem(), QLatin1String(why));
        ASSERT_TRUE(entry()) << text;
        EXPECT_EQ(entry()->text(), QLatin1String(text)) << "nothing that was typed is lost";
    }
    panel.startRow().captureKey().setFocus();
    EXPECT_EQ(entry()->text(), QStringLiteral("soon")) << "nor when the keyboard goes elsewhere";
    EXPECT_EQ(locators.end.value(), std::nullopt);
    entry()->setFocus();
    entry()->selectAll();
    QTest::keyClicks(entry(), QStringLiteral("1000"));
    QTest::keyClick(entry(), Qt::Key_Tab);
    EXPECT_EQ(locators.end.value(), (TimecodePosition{fps25, 0, 0, 10, 0}));
    row.edit();
    QTest::keyClicks(entry(), QStringLiteral("5"));
    QTest::keyClick(entry(), Qt::Key_Escape);
    EXPECT_EQ(locators.end.value(), (TimecodePosition{fps25, 0, 0, 10, 0}));
    EXPECT_EQ(TimecodeText::parse(QStringLiteral("00:11:00:01"), fps30Drop).position, std::nullopt);
    EXPECT_TRUE(TimecodeText::parse(QStringLiteral("00;10;00;01"), fps30Drop).position);
}

TEST_F(TransportPanelTest, KeysDriveTheRecorder) {
    connectTransport();
    key("Play").click();
    EXPECT_EQ(tape.recorder.state(), State::playing);
    key("Record").click();
    EXPECT_TRUE(tape.recorder.isRecording());
    key("Rewind").click();
    EXPECT_EQ(tape.recorder.state(), State::rewinding);
    key("Fast forward").click();
    EXPECT_EQ(tape.recorder.state(), State::fastForwarding);
    key("Stop").click();
    EXPECT_EQ(tape.recorder.state(), State::stopped);
    panel.togglePlay();
    EXPECT_EQ(tape.recorder.state(), State::playing);
    tape.roll(1s);
    panel.togglePlay();
    EXPECT_EQ(tape.recorder.state(), State::stopped);
}

TEST_F(TransportPanelTest, GoesToTheStartAndToTheEnd) {
    connectTransport();
    EXPECT_EQ(key("Go to start").toolTip(), QStringLiteral("Return to zero  (Return)"));
    EXPECT_EQ(key("Go to end").toolTip(), QStringLiteral("Go to end of selected pass -- not set yet"));
    EXPECT_FALSE(key("Go to end").isEnabled());
    tape.recorder.locate({.hours = 2});
    panel.goToEnd();
    EXPECT_EQ(where(), QStringLiteral("02:00:00:00"));
    key("Go to start").click();
    EXPECT_EQ(where(), QStringLiteral("00:00:00:00"));
    locators.setStart(TimecodePosition{fps25, 1, 0, 0, 0});
    EXPECT_EQ(key("Go to start").toolTip(), QStringLiteral("Go to start  (Return)"));
    panel.goToStart();
    EXPECT_EQ(where(), QStringLiteral("01:00:00:00"));

    passEnd = TimecodePosition{fps25, 1, 0, 3, 5};
    panel.refresh();
    EXPECT_EQ(key("Go to end").toolTip(), QStringLiteral("Go to end of selected pass"));
    key("Go to end").click();
    EXPECT_EQ(where(), QStringLiteral("01:00:03:05"));
    locators.setEnd(TimecodePosition{fps25, 1, 4, 0, 0});
    EXPECT_EQ(key("Go to end").toolTip(), QStringLiteral("Go to end"));
    key("Go to end").click();
    EXPECT_EQ(where(), QStringLiteral("01:04:00:00"));
}

} // namespace
} // namespace tessik
