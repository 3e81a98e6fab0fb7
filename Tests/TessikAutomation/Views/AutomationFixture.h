#pragma once

#include "Support/AutomationRig.h"
#include "Support/CleanSettings.h"
#include "TessikAutomation/Views/Automation/AutomationPanelView.h"
#include "TessikAutomation/Views/Automation/PassesPopover.h"
#include "TessikAutomation/Views/Controls/NameSection.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"
#include "TessikAutomation/Views/Window/MainWindow.h"

#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace tessik::test {

using namespace std::chrono_literals;

/// The main window with the automation's panel and lists on the rig's desk and recorder, in injected time.
struct AutomationWindowTest : testing::Test, CleanSettings, AutomationRig {
    AutomationWindowTest() {
        window.setAutomationPanel(panel);
        window.resize(1366, 768);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        settle();
    }

    static void settle() { QApplication::processEvents(); }
    template <typename Widget = QWidget>
    static Widget& find(const QWidget& in, const char* name) {
        auto* widget = in.findChild<Widget*>(QLatin1String(name));
        EXPECT_TRUE(widget) << name;
        return *widget;
    }
    QAbstractButton& key(const char* legend) { return find<QAbstractButton>(*panel, legend); }
    /// A press where the pointer would be, on what is really there.
    void click(QWidget& widget) {
        const QPoint at = widget.mapTo(&window, widget.rect().center());
        ASSERT_TRUE(widget.isVisible());
        ASSERT_EQ(window.childAt(at), &widget)
            << qPrintable(widget.objectName()) << " under " << window.childAt(at)->metaObject()->className();
        QTest::mouseClick(&widget, Qt::LeftButton);
        settle();
    }
    /// A key that goes where the window's keyboard is.
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window.windowHandle(), key, modifiers);
        settle();
    }
    void type(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClick(window.windowHandle(), letter.toLatin1());
        settle();
    }
    /// The rows that are shown, from the top.
    static std::vector<RecordRow*> rows(const Popover& popover) {
        std::vector<RecordRow*> found;
        for (RecordRow* row : popover.findChildren<RecordRow*>())
            if (row->isVisible()) found.push_back(row);
        std::sort(found.begin(), found.end(), [](const auto* a, const auto* b) { return a->y() < b->y(); });
        return found;
    }
    static QStringList names(const Popover& popover) {
        QStringList texts;
        for (const RecordRow* row : rows(popover))
            texts << row->accessibleName();
        return texts;
    }
    static bool shows(const QWidget& in, const QString& text) {
        const QList<QLabel*> labels = in.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&text](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }
    static bool hasKeyboard(const QWidget& part) {
        const QWidget* focus = QApplication::focusWidget();
        return focus && (focus == &part || part.isAncestorOf(focus));
    }

    /// A pass of inputs at a level, `events` moves of input 1.
    static AutomationPass pass(const char* name, int level, int events = 0, int age = 0,
                               MTCFrameRate rate = MTCFrameRate::fps25) {
        AutomationPass made{.id = QUuid::createUuid(),
                            .name = QLatin1String(name),
                            .createdAt = dateOfSecond(1'800'000'000 - age),
                            .frameRate = rate,
                            .startTimecode = TimecodePosition::fromTotalFrames(rate, 0),
                            .events = {},
                            .initialState = QList<ChannelSnapshot>{}};
        for (int i = 0; i < events; ++i)
            made.events.append({i, ChannelKind::input(1), PassEventValue::fader(i % 128)});
        for (int input = 1; input <= 32; ++input)
            made.initialState->append({.kind = ChannelKind::input(input), .faderValue = level});
        return made;
    }

    ThemeStore theme;
    TransportManager transport{service};
    ChannelLabelStore labels;
    MasterSectionStore master;
    MainWindow window{{theme, link, clock, transport, manualSettings, labels, master}};
    AutomationPanelView* panel = new AutomationPanelView(engine, model, clock, window.drawing());
    SymbolButton& snapshotsButton = panel->addButton(QStringLiteral("snapshots"), QStringLiteral("Snapshots"));
    SymbolButton& passesButton = panel->addButton(QStringLiteral("passes"), {});
    SnapshotsPopover& snapshotsPopover = *new SnapshotsPopover(
        snapshots, recall, window.history(), snapshotsButton, window.drawing(), window.centralWidget(),
        [] { return QDateTime(QDate(2026, 3, 4), QTime(21, 5)).toUTC(); });
    PassesPopover& passesPopover =
        *new PassesPopover(engine, passes, window.history(), passesButton, window.drawing(), window.centralWidget());
};

} // namespace tessik::test
