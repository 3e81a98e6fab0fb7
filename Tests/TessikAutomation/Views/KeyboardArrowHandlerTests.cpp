#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace tessik {
namespace {

struct KeyboardArrowHandlerTest : testing::Test {
    QWidget window;
    QPushButton* button = new QPushButton(QStringLiteral("Press"));
    QLineEdit* line = new QLineEdit;
    QPlainTextEdit* text = new QPlainTextEdit;
    KeyboardArrowHandler handler{window};
    QString calls; ///< a letter each
    int clicks = 0;

    KeyboardArrowHandlerTest() {
        auto* layout = new QVBoxLayout(&window);
        for (QWidget* widget :
             {static_cast<QWidget*>(button), static_cast<QWidget*>(line), static_cast<QWidget*>(text)})
            layout->addWidget(widget);
        handler.onLeft = [this] { calls += QLatin1Char('l'); };
        handler.onRight = [this] { calls += QLatin1Char('r'); };
        handler.onPlayStop = [this] { calls += QLatin1Char('p'); };
        handler.onReturnToStart = [this] { calls += QLatin1Char('s'); };
        handler.letters[Qt::Key_W] = [this] { calls += QLatin1Char('w'); };
        handler.letters[(Qt::SHIFT | Qt::Key_C).toCombined()] = [this] { calls += QLatin1Char('c'); };
        QObject::connect(button, &QPushButton::clicked, &window, [this] { ++clicks; });
        window.show();
        window.activateWindow();
        button->setFocus();
        QCoreApplication::processEvents();
    }
    QString press(QWidget& receiver, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        calls.clear();
        QTest::keyClick(&receiver, key, modifiers);
        return calls;
    }
};

TEST_F(KeyboardArrowHandlerTest, TakesTheWindowsKeys) {
    const std::tuple<Qt::Key, Qt::KeyboardModifier, const char*> rows[]{
        {Qt::Key_Left, Qt::NoModifier, "l"},      {Qt::Key_Right, Qt::NoModifier, "r"},
        {Qt::Key_Space, Qt::NoModifier, "p"},     {Qt::Key_Return, Qt::NoModifier, "s"},
        {Qt::Key_Enter, Qt::KeypadModifier, "s"}, {Qt::Key_Left, Qt::ShiftModifier, "l"},
        {Qt::Key_Right, Qt::ControlModifier, ""}, {Qt::Key_Right, Qt::AltModifier, ""},
        {Qt::Key_Right, Qt::MetaModifier, ""},    {Qt::Key_A, Qt::NoModifier, ""},
        {Qt::Key_W, Qt::NoModifier, "w"},         {Qt::Key_W, Qt::ControlModifier, ""},
        {Qt::Key_C, Qt::ShiftModifier, "c"},      {Qt::Key_C, Qt::NoModifier, ""}};
    for (const auto& [key, modifier, call] : rows)
        EXPECT_EQ(press(*button, key, modifier), QLatin1String(call)) << key;
    EXPECT_EQ(clicks, 0) << "Space is the window's also where a button has the keyboard";
}

TEST_F(KeyboardArrowHandlerTest, LeavesTextsAndDialogsAlone) {
    line->setFocus();
    EXPECT_EQ(press(*line, Qt::Key_Space), QString());
    EXPECT_EQ(line->text(), QStringLiteral(" "));
    text->setFocus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_W})
        EXPECT_EQ(press(*text, key), QString());
    EXPECT_EQ(text->toPlainText(), QStringLiteral("\nw"));
    line->setReadOnly(true);
    line->setFocus();
    EXPECT_EQ(press(*line, Qt::Key_Space), QStringLiteral("p")) << "nothing to edit";

    QDialog dialog(&window);
    auto* inside = new QPushButton(QStringLiteral("OK"), &dialog);
    dialog.show();
    inside->setFocus();
    EXPECT_EQ(press(*inside, Qt::Key_Space), QString());
}

TEST_F(KeyboardArrowHandlerTest, AKeyHeldDownPagesButDoesNotPlayAndStopInTurn) {
    const auto repeat = [this](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(button, &event);
    };
    calls.clear();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Space, Qt::Key_Return, Qt::Key_W})
        repeat(key);
    EXPECT_EQ(calls, QStringLiteral("r"));
    EXPECT_EQ(clicks, 0);
}

} // namespace
} // namespace tessik
