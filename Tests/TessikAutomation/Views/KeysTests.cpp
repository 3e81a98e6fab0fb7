#include "Support/FarDesk.h"
#include "TessikAutomation/Application/ApplicationFixture.h"

#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

namespace tessik {
namespace {

/// The keys of the main window, pressed where the window has the keyboard.
struct KeysTest : ApplicationTest {
    KeysTest() {
        application.transport.refreshDestinations();
        application.transport.selectDestination(far.inID());
        application.mtcClock.handleFullFrame({MTCFrameRate::fps25, 1, 2, 3, 4});
        const AutomationPass pass{
            .id = QUuid::createUuid(), .name = QStringLiteral("Verse"), .createdAt = currentSecond()};
        application.passes.save(pass);
        application.passEngine.select(pass);
        activate(application.window);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(application.window.windowHandle(), key, modifiers);
        QApplication::processEvents();
    }
    std::uint64_t sent() { return std::uint64_t(application.transport.port.sentCount.value()); }
    int inputsAt() { return application.window.desk().inputs().destination(); }

    FarDesk far{service};
};

TEST_F(KeysTest, LettersArmTheModesAndCaptureTheLocators) {
    const auto mode = [this] { return application.passEngine.mode.value(); };
    const std::pair<Qt::Key, AutomationMode> modes[]{{Qt::Key_W, AutomationMode::write},
                                                     {Qt::Key_R, AutomationMode::read},
                                                     {Qt::Key_U, AutomationMode::update},
                                                     {Qt::Key_U, AutomationMode::off},
                                                     {Qt::Key_R, AutomationMode::read}};
    for (const auto& [key, armed] : modes) {
        press(key);
        EXPECT_EQ(mode(), armed) << key;
    }
    press(Qt::Key_N);
    EXPECT_TRUE(application.passEngine.nullEnabled.value());
    press(Qt::Key_N);
    EXPECT_FALSE(application.passEngine.nullEnabled.value());

    press(Qt::Key_C);
    ASSERT_TRUE(application.locators.start.value());
    EXPECT_EQ(application.locators.start.value()->displayString(), QStringLiteral("01:02:03:04"));
    EXPECT_FALSE(application.locators.end.value());
    press(Qt::Key_C, Qt::ShiftModifier);
    EXPECT_TRUE(application.locators.end.value());
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(application.window.settingsView());
}

TEST_F(KeysTest, AnOpenMenuHasTheArrowsAndTheTapeKeys) {
    press(Qt::Key_Right);
    const int at = inputsAt();
    EXPECT_GT(at, 0);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    const std::uint64_t before = sent();
    EXPECT_EQ(before, 2u);

    const auto menu = [] {
        const auto* open = qobject_cast<const QMenu*>(QApplication::activePopupWidget());
        return open ? open->title() : QString();
    };
    press(Qt::Key_F, Qt::AltModifier);
    const std::pair<Qt::Key, const char*> walk[]{
        {Qt::Key_Right, "&Edit"}, {Qt::Key_Right, "&View"}, {Qt::Key_Left, "&Edit"}, {Qt::Key_Left, "&File"},
        {Qt::Key_Down, "&File"},  {Qt::Key_W, "&File"},     {Qt::Key_Escape, ""}};
    for (const auto& [key, title] : walk) {
        press(key);
        EXPECT_EQ(menu(), QLatin1String(title)) << key;
    }
    while (QApplication::activePopupWidget())
        press(Qt::Key_Escape);
    application.window.menuBar()->setFocus(); // as a tap of Alt leaves it
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    EXPECT_EQ(inputsAt(), at);
    EXPECT_EQ(sent(), before);
    EXPECT_EQ(application.passEngine.mode.value(), AutomationMode::off);
}

TEST_F(KeysTest, ModifiersTextsDialogsAndRepeatsAreLeftAlone) {
    const auto mode = [this] { return application.passEngine.mode.value(); };
    for (const Qt::KeyboardModifier other : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        press(Qt::Key_Right, other);
        press(Qt::Key_W, other);
    }
    EXPECT_EQ(inputsAt(), 0);
    EXPECT_EQ(mode(), AutomationMode::off);

    QLineEdit line(&application.window);
    line.show();
    line.setFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_W})
        press(key);
    EXPECT_EQ(line.text(), QStringLiteral(" w"));
    EXPECT_EQ(sent(), 0u);
    line.setReadOnly(true);
    line.setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(sent(), 1u) << "nothing to edit";
    line.hide();
    QPushButton button(&application.window);
    bool isPressed = false;
    QObject::connect(&button, &QPushButton::clicked, &button, [&] { isPressed = true; });
    button.show();
    button.setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(sent() == 2 && !isPressed) << "the window's also where a button has the keyboard";

    QDialog dialog(&application.window);
    QPushButton inside(&dialog);
    dialog.show();
    inside.setFocus();
    QTest::keyClick(&inside, Qt::Key_Space);
    EXPECT_EQ(sent(), 2u);

    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Space, Qt::Key_Return, Qt::Key_W}) {
        QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&application.window, &held);
    }
    EXPECT_GT(inputsAt(), 0) << "a key held down pages";
    EXPECT_EQ(sent(), 2u) << "but does not play and stop in turn";
    EXPECT_EQ(mode(), AutomationMode::off);
}

} // namespace
} // namespace tessik
