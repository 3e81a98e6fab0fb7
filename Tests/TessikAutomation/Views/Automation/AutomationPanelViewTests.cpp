#include "TessikAutomation/Views/AutomationFixture.h"

namespace tessik::test {
namespace {

struct AutomationPanelViewTest : AutomationWindowTest {
    QString status() {
        const auto& detail = find<QLabel>(*panel, "statusDetail");
        return find<QLabel>(*panel, "status").text() + QLatin1Char('|') +
               (detail.isVisible() ? detail.text() : QString());
    }
    QString enabled() {
        return which([](const QAbstractButton& key) { return key.isEnabled(); });
    }
    QString lit() {
        return which([](const QAbstractButton& key) { return key.isChecked(); });
    }
    /// The warning's text; empty while there is none.
    QString warning() {
        return find(*panel, "unsynced").isVisible() ? find<QLabel>(*panel, "unsyncedText").text() : QString();
    }

private:
    template <typename Holds>
    QString which(Holds holds) {
        QStringList found;
        for (const char* legend : {"WRITE", "UPDATE", "READ", "NULL"})
            if (holds(key(legend))) found << QLatin1String(legend);
        return found.join(QLatin1Char(' '));
    }
};

TEST_F(AutomationPanelViewTest, KeysArmDisarmAndSayWhatTheyNeed) {
    EXPECT_EQ(enabled(), QStringLiteral("WRITE"));
    for (const char* legend : {"UPDATE", "READ", "NULL"})
        EXPECT_FALSE(key(legend).toolTip().isEmpty()) << legend;
    click(key("WRITE"));
    EXPECT_EQ(engine.mode.value(), AutomationMode::write);
    EXPECT_EQ(lit(), QStringLiteral("WRITE"));
    click(key("WRITE"));
    EXPECT_EQ(engine.mode.value(), AutomationMode::off);
    key("WRITE").setFocus(Qt::TabFocusReason);
    type(Qt::Key_Up);
    EXPECT_EQ(engine.mode.value(), AutomationMode::write);

    engine.select(pass("A", 50));
    EXPECT_EQ(enabled(), QStringLiteral("WRITE UPDATE READ"));
    click(key("UPDATE"));
    EXPECT_EQ(engine.mode.value(), AutomationMode::update);
    click(key("READ"));
    EXPECT_EQ(enabled(), QStringLiteral("WRITE UPDATE READ NULL"));
    click(key("NULL"));
    EXPECT_TRUE(engine.nullEnabled.value());
    EXPECT_EQ(lit(), QStringLiteral("READ NULL"));
    click(key("NULL"));
    EXPECT_EQ(lit(), QStringLiteral("READ"));
    engine.select(std::nullopt);
    EXPECT_EQ(enabled(), QStringLiteral("WRITE"));
    EXPECT_EQ(lit(), QString());
    engine.restoreTake(pass("Take", 50));
    EXPECT_EQ(enabled(), QStringLiteral("WRITE UPDATE READ")) << "a waiting take plays as a selected pass does";
}

TEST_F(AutomationPanelViewTest, StatusFollowsTheEngine) {
    EXPECT_EQ(status(), QStringLiteral("AUTOMATION OFF|"));
    engine.mode = AutomationMode::write;
    EXPECT_EQ(status(), QStringLiteral("ARMED|waiting for timecode"));
    roll(1s);
    desk.moveFader(ChannelKind::input(1), 10);
    run(500ms);
    EXPECT_EQ(status(), QStringLiteral("ACTIVE|1 events"));
    stop();
    EXPECT_EQ(status(), QStringLiteral("ARMED|waiting for timecode")) << "dropped to READ";
    engine.finishRecording(QStringLiteral("A"), passes);
    roll(1s);
    EXPECT_EQ(status(), QStringLiteral("ACTIVE|"));
    engine.select(pass("B", 50, 0, 0, MTCFrameRate::fps30));
    run(50ms);
    EXPECT_EQ(status(), QStringLiteral("WRONG FRAME RATE|pass 30 fps, tape 25 fps"));
}

TEST_F(AutomationPanelViewTest, WarnsOfUnsyncedChannelsWhereARecordingWouldSufferFromThem) {
    model.modelSize = ConsoleModel::ModelSize::ch24;
    EXPECT_EQ(warning(), QStringLiteral("33 channels not synced"));
    desk.moveFader(ChannelKind::stereo(), 10);
    run(10ms);
    EXPECT_EQ(warning(), QStringLiteral("32 channels not synced"));
    const std::pair<AutomationMode, bool> modes[]{{AutomationMode::write, true},
                                                  {AutomationMode::update, true},
                                                  {AutomationMode::read, false},
                                                  {AutomationMode::off, true}};
    for (const auto& [mode, isWarned] : modes) {
        engine.mode = mode;
        EXPECT_EQ(!warning().isEmpty(), isWarned) << qPrintable(rawValue(mode));
    }
    desk.recallScene(0);
    run(500ms);
    model.modelSize = ConsoleModel::ModelSize::ch32;
    EXPECT_EQ(warning(), QString()) << "the desk told all it has";
}

} // namespace
} // namespace tessik::test
