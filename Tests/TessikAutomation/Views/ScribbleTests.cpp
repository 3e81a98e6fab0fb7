#include "TessikAutomation/Views/Desk/ScribbleEditor.h"
#include "TessikAutomation/Views/WindowFixture.h"

#include <QAbstractButton>
#include <QAccessible>

namespace tessik {
namespace {

struct ScribbleTest : WindowTest {
    ScribbleTest() {
        show();
        window->activateWindow();
        QApplication::processEvents();
        window->keys.onPlayStop = [this] { ++windowKeys; };
        window->keys.onReturnToStart = [this] { ++windowKeys; };
    }
    ScribbleEditor& editing() { return window->desk().scribbleEditor(); }
    EntryField& field() { return editing().field(); }
    std::optional<QString> editingID() { return window->desk().scribbles().editingID; }
    void click(ChannelKind kind) {
        ControlHost& host = strip(kind);
        QTest::mouseClick(&host, Qt::LeftButton, {}, centre(host, "scribble"));
    }
    std::optional<ChannelLabel> label(ChannelKind kind) {
        const auto all = labels.labelsByChannelID.value();
        return all.contains(kind.id()) ? std::optional(all.value(kind.id())) : std::nullopt;
    }

    int windowKeys = 0;
};

const ChannelKind in3 = ChannelKind::input(3);

TEST_F(ScribbleTest, ClickTypeColourReturn) {
    click(in3);
    ASSERT_TRUE(editing().isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &field());
    QTest::keyClicks(&field(), QStringLiteral("Lead Vox"));
    QTest::mouseClick(&editing().swatch(5), Qt::LeftButton);
    EXPECT_FALSE(label(in3)) << "nothing is kept before Return";
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(label(in3), (ChannelLabel{QStringLiteral("Lead Vox"), QStringLiteral("4EA8CB")}));
    EXPECT_FALSE(editing().isVisible());
    EXPECT_EQ(windowKeys, 0) << "a space was typed, Return was the field's";
    EXPECT_EQ(strip(in3).valueText(control(strip(in3), "scribble")), QStringLiteral("Lead Vox"));

    EXPECT_EQ(window->history().undoText(), QStringLiteral("label, channel 3"));
    window->history().undo();
    EXPECT_FALSE(label(in3)) << "as it was: without a label";
    window->history().redo();
    EXPECT_EQ(label(in3)->name, QStringLiteral("Lead Vox"));
}

TEST_F(ScribbleTest, EscapeDropsAClickElsewhereKeeps) {
    labels.update({QStringLiteral("Snare"), QStringLiteral("123456")}, in3.id());
    click(in3);
    EXPECT_EQ(field().text(), QStringLiteral("Snare"));
    QTest::keyClicks(&field(), QStringLiteral("Top"));
    QTest::keyClick(&field(), Qt::Key_Escape);
    EXPECT_EQ(label(in3)->name, QStringLiteral("Snare"));
    EXPECT_FALSE(editingID());

    click(in3);
    QTest::keyClicks(&field(), QStringLiteral("Bottom"));
    click(ChannelKind::group(2));
    EXPECT_EQ(*label(in3), (ChannelLabel{QStringLiteral("Bottom"), QStringLiteral("123456")}))
        << "its own colour stays";
    EXPECT_EQ(editingID(), ChannelKind::group(2).id());
    QTest::mouseClick(window->centralWidget(), Qt::LeftButton, {}, {200, 20});
    EXPECT_FALSE(editingID() || label(ChannelKind::group(2))) << "nothing was entered";
}

TEST_F(ScribbleTest, ColoursAreChosenByKeysAndAreSpokenOf) {
    click(in3);
    const auto chosen = [this] {
        QStringList names;
        for (int i = 0; i < int(channelLabelPalette.size()); ++i) {
            const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&editing().swatch(i));
            if (spoken->state().checked) names << spoken->text(QAccessible::Name);
        }
        return names.join(u' ');
    };
    EXPECT_EQ(chosen(), QStringLiteral("grey"));
    for (const auto& [key, color] : {std::pair(Qt::Key_Down, "red"), {Qt::Key_Up, "grey"}, {Qt::Key_Up, "pink"}}) {
        QTest::keyClick(&field(), key);
        EXPECT_EQ(chosen(), QLatin1String(color));
        EXPECT_TRUE(field().accessibleDescription().contains(QLatin1String(color)));
    }
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(label(in3)->colorHex, QStringLiteral("E04EA0"));

    ControlHost& host = strip(in3);
    QAccessibleInterface* paper = QAccessible::queryAccessibleInterface(&host)->child(control(host, "scribble"));
    paper->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(editingID(), in3.id());
}

TEST_F(ScribbleTest, TabGoesOverTheWholeOrderAndStopsAtItsEnds) {
    const QStringList order = window->desk().scribbles().order();
    EXPECT_EQ(order.indexOf(QStringLiteral("stereo")), 32);
    click(ChannelKind::input(1));
    for (qsizetype i = 0; i < order.size(); ++i) {
        ASSERT_EQ(editingID(), order[i]);
        QTest::keyClicks(&field(), QString::number(i));
        QTest::keyClick(&field(), Qt::Key_Tab);
    }
    for (qsizetype i = order.size(); i-- > 0;) {
        ASSERT_EQ(editingID(), order[i]) << "no way on from the last";
        EXPECT_EQ(labels.labelsByChannelID.value().value(order[i]).name, QString::number(i));
        QTest::keyClick(&field(), Qt::Key_Backtab, Qt::ShiftModifier);
    }
    EXPECT_EQ(editingID(), order.first());
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->desk().inputs().left() == 0; })) << "brought into view";
    EXPECT_TRUE(editing().geometry().contains(strip(ChannelKind::input(1)).mapTo(&window->desk(), QPoint(40, 60))))
        << "the field follows its strip";
    model.modelSize = ConsoleModel::ModelSize::ch24;
    EXPECT_EQ(window->desk().scribbles().order()[24], QStringLiteral("stereo"));
}

} // namespace
} // namespace tessik
