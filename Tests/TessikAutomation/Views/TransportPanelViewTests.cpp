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
};

TEST_F(TransportPanelTest, CounterTellsWhatTheClockDoes) {
    EXPECT_EQ(counter->timeText(), QStringLiteral("--:--:--:--"));
    tape.recorder.locate({.hours = 1});
    tape.recorder.play();
    tape.roll(1020ms);
    const QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(counter);
    EXPECT_EQ(reader->text(QAccessible::Value), QStringLiteral("01:00:00:24 LOCKED 25 fps"));
    tape.recorder.stop();
    tape.roll(1s);
    EXPECT_EQ(counter->timeText(), QStringLiteral("01:00:00:24")) << "frozen";
    EXPECT_EQ(counter->lockText(), QStringLiteral("NO TIMECODE"));
    tape.clock.handleFullFrame({fps30Drop, 31, 127, 127, 127}); // wider than the display: shown all the same
    EXPECT_EQ(counter->timeText(), QStringLiteral("31:127:127:127"));
    counter->grab();
}

TEST_F(TransportPanelTest, LocatorRowsOfferWhatCanBeDone) {
    LocatorRow& row = panel.endRow();
    EXPECT_FALSE(row.field().isEnabled() || row.captureKey().isEnabled() || row.clearKey().isEnabled());
    tape.clock.handleFullFrame({fps25, 1, 2, 3, 4});
    ASSERT_TRUE(row.captureKey().isEnabled());
    row.captureKey().click();
    EXPECT_EQ(row.field().text(), QStringLiteral("01:02:03:04"));
    EXPECT_FALSE(row.field().isEnabled()) << "there is no recorder";
    connectTransport();
    row.field().click();
    EXPECT_EQ(where(), QStringLiteral("01:02:03:04"));
    tape.service.unplug(SimulatedRecorder::portName);
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(row.field().isEnabled()) << "the recorder is gone";
    tape.service.plug(SimulatedRecorder::portName);
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(row.field().isEnabled());
    row.clearKey().click();
    EXPECT_FALSE(row.clearKey().isEnabled());
    EXPECT_FALSE(locators.end.value());
    panel.startRow().captureKey().click();
    EXPECT_TRUE(locators.start.value());
    panel.startRow().clearKey().click();
    EXPECT_FALSE(locators.start.value());
    history.undo();
    EXPECT_TRUE(locators.start.value()) << "what was cleared comes back";
    while (history.canUndo())
        history.undo();
    EXPECT_FALSE(locators.start.value() || locators.end.value()) << "and what was set goes";
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
    for (const char* text : {"1:2", "01:02:03:25"}) {
        entry()->selectAll();
        QTest::keyClicks(entry(), QLatin1String(text));
        EXPECT_EQ(problem(), QString());
        QTest::keyClick(entry(), Qt::Key_Return);
        EXPECT_NE(problem(), QString());
        ASSERT_TRUE(entry()) << text;
        EXPECT_EQ(entry()->text(), QLatin1String(text)) << "nothing that was typed is lost";
    }
    panel.startRow().captureKey().setFocus();
    EXPECT_TRUE(entry()) << "nor when the keyboard goes elsewhere";
    EXPECT_EQ(locators.end.value(), std::nullopt);
    entry()->setFocus();
    entry()->selectAll();
    QTest::keyClicks(entry(), QStringLiteral("1000"));
    QTest::keyClick(entry(), Qt::Key_Tab);
    row.edit();
    QTest::keyClicks(entry(), QStringLiteral("5"));
    QTest::keyClick(entry(), Qt::Key_Escape);
    EXPECT_EQ(locators.end.value(), (TimecodePosition{fps25, 0, 0, 10, 0}));
}

TEST(TimecodeText, RefusesWhatIsNoPosition) {
    const std::tuple<const char*, MTCFrameRate, bool> rows[]{
        {"23:59:59:29", fps30, true},      {"24:00:00:00", fps30, false},   {"1:60:00:00", fps25, false},
        {"1:00:60:00", fps25, false},      {"1:00:00:25", fps25, false},    {"soon", fps25, false},
        {"00:11:00:01", fps30Drop, false}, {"00;10;00;01", fps30Drop, true}};
    for (const auto& [text, rate, isOne] : rows)
        EXPECT_EQ(TimecodeText::parse(QLatin1String(text), rate).position.has_value(), isOne) << text;
}

TEST_F(TransportPanelTest, KeysDriveTheRecorder) {
    connectTransport();
    const std::pair<const char*, State> keys[]{{"Play", State::playing},
                                               {"Record", State::playing},
                                               {"Rewind", State::rewinding},
                                               {"Fast forward", State::fastForwarding},
                                               {"Stop", State::stopped}};
    for (const auto& [name, state] : keys) {
        key(name).click();
        EXPECT_EQ(tape.recorder.state(), state) << name;
        EXPECT_EQ(tape.recorder.isRecording(), QLatin1String(name) == QLatin1String("Record"));
    }
    panel.togglePlay();
    tape.roll(1s);
    EXPECT_EQ(tape.recorder.state(), State::playing);
    panel.togglePlay();
    EXPECT_EQ(tape.recorder.state(), State::stopped);
}

TEST_F(TransportPanelTest, GoesToTheStartAndToTheEnd) {
    connectTransport();
    EXPECT_FALSE(key("Go to end").isEnabled());
    tape.recorder.locate({.hours = 2});
    panel.goToEnd();
    EXPECT_EQ(where(), QStringLiteral("02:00:00:00"));
    key("Go to start").click();
    EXPECT_EQ(where(), QStringLiteral("00:00:00:00"));
    locators.setStart(TimecodePosition{fps25, 1, 0, 0, 0});
    panel.goToStart();
    EXPECT_EQ(where(), QStringLiteral("01:00:00:00"));
    passEnd = TimecodePosition{fps25, 1, 0, 3, 5};
    panel.refresh();
    key("Go to end").click();
    EXPECT_EQ(where(), QStringLiteral("01:00:03:05"));
    locators.setEnd(TimecodePosition{fps25, 1, 4, 0, 0});
    key("Go to end").click();
    EXPECT_EQ(where(), QStringLiteral("01:04:00:00"));
}

} // namespace
} // namespace tessik
