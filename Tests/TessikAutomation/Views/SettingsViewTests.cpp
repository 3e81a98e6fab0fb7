#include "TessikAutomation/Views/WindowFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace tessik {
namespace {

namespace Key = SavedSettings::Key;

struct SettingsViewTest : WindowTest {
    SettingsViewTest() {
        show();
        window->openSettings();
        QApplication::processEvents();
    }
    SettingsView& sheet() { return *window->settingsView(); }
    template <typename Widget>
    Widget& find(const char* name) {
        auto* widget = sheet().findChild<Widget*>(QLatin1String(name));
        EXPECT_TRUE(widget) << name;
        return *widget;
    }
    QComboBox& picker(const char* name) { return find<QComboBox>(name); }
    /// What a person does: the row becomes current, then is activated.
    void pick(const char* name, int row) {
        picker(name).setCurrentIndex(row);
        Q_EMIT picker(name).activated(row);
    }
    static QStringList rows(const QComboBox& box) {
        QStringList texts;
        for (int i = 0; i < box.count(); ++i)
            texts << box.itemText(i);
        return texts;
    }
};

TEST_F(SettingsViewTest, PortChoicesTakeEffectAndAreRemembered) {
    pick("MIDI In", 1);
    EXPECT_EQ(manager.connection.connectedSourceID.value(), sourceID());
    EXPECT_EQ(SavedSettings::uniqueID(Key::consoleSourceID), sourceID());
    EXPECT_EQ(find<QLabel>("status").text(), QStringLiteral("Connected: Desk Out"));
    pick("MIDI Out", 1);
    EXPECT_EQ(output.port.connectedDestinationID.value(), destinationID());
    EXPECT_EQ(SavedSettings::uniqueID(Key::midiOutDestinationID), destinationID());
    pick("MIDI In", 0);
    EXPECT_FALSE(manager.connection.connectedSourceID.value());
    EXPECT_FALSE(SavedSettings::uniqueID(Key::consoleSourceID));
}

TEST_F(SettingsViewTest, ListsFollowWhatIsPluggedInAndAMissingChoiceShowsNoRow) {
    EXPECT_EQ(rows(picker("MIDI In")), (QStringList{QStringLiteral("None"), QStringLiteral("Desk Out")}));
    EXPECT_EQ(picker("MIDI In").currentIndex(), 0);
    pick("MIDI Out", 1);
    const std::int32_t chosen = destinationID();
    service.unplug(QStringLiteral("Desk In"));
    QApplication::processEvents();
    EXPECT_EQ(rows(picker("MIDI Out")), QStringList{QStringLiteral("None")});
    EXPECT_EQ(picker("MIDI Out").currentIndex(), -1);
    EXPECT_EQ(SavedSettings::uniqueID(Key::midiOutDestinationID), chosen) << "unplugging forgets nothing";
    service.plug(QStringLiteral("Desk In"));
    QApplication::processEvents();
    EXPECT_EQ(picker("MIDI Out").currentText(), QStringLiteral("Desk In"));
}

TEST_F(SettingsViewTest, ARememberedPortThatWasNeverThereShowsNoRowUntilNoneIsChosen) {
    sheet().findChild<QPushButton*>()->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(window->settingsView());
    SavedSettings::setUniqueID(Key::consoleSourceID, 77);
    window->openSettings();
    EXPECT_EQ(picker("MIDI In").currentIndex(), -1);
    pick("MIDI In", 0);
    EXPECT_EQ(picker("MIDI In").currentIndex(), 0);
    EXPECT_FALSE(SavedSettings::uniqueID(Key::consoleSourceID));
}

TEST_F(SettingsViewTest, TheChannelStepsFrom1To16) {
    auto& up = find<QToolButton>("MIDI Channel up");
    auto& down = find<QToolButton>("MIDI Channel down");
    EXPECT_FALSE(down.isEnabled());
    for (int i = 0; i < 20; ++i)
        up.click();
    EXPECT_EQ(output.midiChannel.value(), 16);
    EXPECT_EQ(find<QLabel>("midiChannel").text(), QStringLiteral("MIDI Channel: 16"));
    EXPECT_FALSE(up.isEnabled());
    down.click();
    EXPECT_EQ(SavedSettings::midiChannel(), 15);
    output.midiChannel = 99; // stored by hand
    down.click();
    EXPECT_EQ(output.midiChannel.value(), 16);
}

TEST_F(SettingsViewTest, ModelAndThemeActAtOnceAndAreRemembered) {
    EXPECT_EQ(picker("Model").currentText(), QStringLiteral("32-Channel"));
    pick("Model", 0);
    EXPECT_FALSE(strip(ChannelKind::input(25)).isVisible());
    EXPECT_EQ(SavedSettings::modelSize(), ConsoleModel::ModelSize::ch24);

    const auto lightness = [](QWidget& widget, QPoint at) {
        return widget.grab().toImage().pixelColor(at).lightness();
    };
    ControlHost& group = strip(ChannelKind::group(1));
    const QPoint plain(group.width() / 4, group.height() - 3);
    EXPECT_LT(lightness(sheet(), {4, 260}), 80);
    EXPECT_LT(lightness(group, plain), 60);
    pick("Theme", 2);
    EXPECT_EQ(SavedSettings::appTheme(), AppTheme::light);
    EXPECT_GT(lightness(sheet(), {4, 260}), 180) << "the open sheet follows";
    EXPECT_GT(lightness(group, plain), 150);
    EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 150);
}

} // namespace
} // namespace tessik
