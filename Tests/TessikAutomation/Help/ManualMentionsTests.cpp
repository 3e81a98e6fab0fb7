#include "ManualMentions.h"
#include "Support/CleanSettings.h"
#include "Support/Sessions.h"
#include "TessikAutomation/Application/Application.h"
#include "TessikAutomation/Application/CommandLine.h"
#include "TessikAutomation/Views/Automation/PassLanesView.h"
#include "TessikAutomation/Views/Controls/RecordRow.h"
#include "TessikAutomation/Views/Drawing/DrawnText.h"
#include "TessikAutomation/Views/Help/HelpMenu.h"
#include "TessikAutomation/Views/Monitor/MIDIMonitorView.h"
#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"
#include "TessikAutomation/Views/Transport/LocatorRow.h"
#include "TessikAutomation/Views/Welcome/WelcomeView.h"
#include "TessikAutomation/Views/Window/ZeroConsoleMenu.h"
#include "TessikRig/RigCommands.h"
#include "TessikRig/TapeTimecode.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegularExpression>
#include <QShortcut>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include <set>

namespace tessik {
namespace {

/// Everything that a user of the program can read and press, from the program itself.
class Visible {
public:
    Visible() {
        Type::onDraw = [this](const QString& text, const QFont&) { add(text); };
    }
    ~Visible() { Type::onDraw = nullptr; }

    /// What a widget and all in it say; drawn texts come in as they are drawn.
    void look(QWidget& root) {
        root.grab();
        addWidget(root);
        for (const QWidget* widget : root.findChildren<QWidget*>())
            addWidget(*widget);
        for (const QAction* action : root.findChildren<QAction*>()) {
            add(action->text());
            add(action->toolTip());
            for (const QKeySequence& keys : action->shortcuts())
                _keys.insert(keys);
        }
        for (const QShortcut* shortcut : root.findChildren<QShortcut*>())
            _keys.insert(shortcut->key());
        for (ControlHost* host : root.findChildren<ControlHost*>())
            for (int i = 0; i < host->controlCount(); ++i)
                addControl(*host, i);
    }
    void add(const QString& text) {
        if (!text.isEmpty()) _texts.insert(plain(text));
    }
    void addKey(const QKeySequence& keys) { _keys.insert(keys); }

    /// Whether a button, menu, field or legend is called exactly that.
    bool isName(const QString& name) const { return _texts.contains(plain(name)); }
    /// Whether the program says that somewhere, as whole words.
    bool isSaid(const QString& text) const {
        const QRegularExpression words(QStringLiteral("(^|\\s)%1($|\\s)").arg(QRegularExpression::escape(text)));
        return std::any_of(_texts.begin(), _texts.end(),
                           [&](const QString& said) { return words.match(said).hasMatch(); });
    }
    bool isKey(const QKeySequence& keys) const { return _keys.contains(keys); }
    /// Whether some control takes that as its value.
    bool isTyped(const QString& text) const {
        return std::any_of(_views.begin(), _views.end(),
                           [&](const auto* view) { return view->typed(text).has_value(); });
    }

private:
    /// Without the mark of a menu's key, and without what stands in brackets behind a name.
    static QString plain(QString text) {
        static const QRegularExpression tail(QStringLiteral("\\s+\\([0-9]+\\)$|  \\(.*\\)$|: [0-9]+$"));
        return text.remove(QLatin1Char('&')).remove(tail);
    }
    void addWidget(const QWidget& widget) {
        add(widget.windowTitle());
        add(widget.toolTip());
        add(widget.accessibleName());
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) add(button->text());
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) add(label->text());
        if (const auto* field = qobject_cast<const QLineEdit*>(&widget)) add(field->placeholderText());
        if (const auto* box = qobject_cast<const QComboBox*>(&widget))
            for (int i = 0; i < box->count(); ++i)
                add(box->itemText(i));
    }
    void addControl(ControlHost& host, int control) {
        add(host.name(control));
        const ControlView& view = host.view(control);
        _views.insert(&view);
        const double number = host.value(control).number;
        for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End})
            for (const bool fine : {false, true})
                if (view.keyed(key, fine, number)) _keys.insert(QKeySequence((fine ? int(Qt::SHIFT) : 0) | key));
    }

    std::set<QString> _texts;
    std::set<QKeySequence> _keys;
    std::set<const ControlView*> _views;
};

struct ManualMentionsTest : testing::Test, CleanSettings {
    ManualMentionsTest() {
        application.window.resize(1600, 900);
        application.window.show();
        settle();
    }
    static void settle() {
        for (int i = 0; i < 3; ++i)
            QApplication::processEvents();
    }
    void lookAtDialog() {
        settle();
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(dialog);
        visible.look(*dialog);
        dialog->close();
        settle();
    }
    /// Looks at each dialog that stops what `run` does, and closes it.
    void lookAtDialogsOf(const std::function<void()>& run) {
        QTimer timer;
        int dialogs = 0;
        timer.callOnTimeout([&] {
            if (QWidget* dialog = QApplication::activeModalWidget()) {
                ++dialogs;
                visible.look(*dialog);
                dialog->close();
            }
        });
        timer.start(0);
        run();
        EXPECT_GE(dialogs, 1);
    }
    void lookAtWindow() {
        settle();
        visible.look(application.window);
    }

    /// Timecode runs, up to now.
    void roll(MTCFrameRate rate) {
        const Uptime spacing = Uptime(std::chrono::seconds(1)) / (4 * framesPerSecond(rate));
        for (int run = 0; run < 4; ++run)
            for (int piece = 0; piece < 8; ++piece)
                application.mtcClock.handleQuarterFrame(
                    UptimeClock::system().now() - (32 - 8 * run - piece) * spacing,
                    TapeTimecode::quarterFrameByte({rate, 1, 0, 0, 2 * run}, piece));
    }
    /// Brings the program into all the states that the manual speaks of.
    void lookAround() {
        MainWindow& window = application.window;
        lookAtWindow();
        application.welcome();
        lookAtDialog();
        window.openSettings();
        lookAtDialog();
        rig.desk.recallScene(0);
        application.connectToRig();
        window.openSettings();
        lookAtDialog();
        rig.service.unplug(SimulatedConsole::portName());
        for (int i = 0; i < 200 && !application.window.problemsKey().isVisible(); ++i)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        lookAtWindow();
        for (const bool isMissing : {true, false})
            for (const Problem& problem : problemsIn({.noMIDI = {},
                                          .ports = {{.label = QStringLiteral("MIDI Out"),
                                                   .isMissing = isMissing,
                                                   .isForgotten = !isMissing,
                                                   .refusal = 0},
                                                    {.label = QStringLiteral("MIDI Out"), .refusal = 1},
                                                    {.label = QStringLiteral("MIDI Out"), .refusal = midiPortHeld},
                                                    {.label = QStringLiteral("MIDI Out"), .isCut = true},
                                                    {.label = QStringLiteral("MIDI Out"), .isAmbiguous = true}},
                                          .isLoop = true,
                                          .isInputLost = true,
                                          .overtaken = 1,
                                          .mismatch = {},
                                          .recoveryProblem = {},
                                          .settingsProblem = {}}))
                visible.add(problem.title);

        application.passes.save(
            {.id = QUuid::createUuid(), .name = QStringLiteral("Verse"), .createdAt = currentSecond()});
        application.snapshots.save(application.snapshotRecall.capture(QStringLiteral("Low"), currentSecond()));
        window.findChild<SnapshotsPopover*>()->open();
        lookAtWindow();
        application.passEngine.mode = AutomationMode::write;
        lookAtWindow();
        roll(MTCFrameRate::fps25);
        application.passEngine.tick();
        ASSERT_TRUE(application.passEngine.isRolling.value());
        visible.look(window);
        application.passEngine.mode = AutomationMode::off;
        application.passEngine.select(application.passes.passes.value().front());
        application.passEngine.restoreTake(application.passes.passes.value().front());
        lookAtWindow();
        for (const MTCFrameRate rate :
             {MTCFrameRate::fps24, MTCFrameRate::fps25, MTCFrameRate::fps30Drop, MTCFrameRate::fps30}) {
            roll(rate);
            lookAtWindow();
        }
        application.passEngine.discardTake();
        QList<QWidget*> withMenus{window.findChild<LocatorRow*>()};
        for (RecordRow* row : window.findChildren<RecordRow*>())
            withMenus << row;
        for (QWidget* part : withMenus) {
            QContextMenuEvent ask(QContextMenuEvent::Mouse, {}, {});
            QApplication::sendEvent(part, &ask);
            ASSERT_TRUE(QApplication::activePopupWidget());
            visible.look(*QApplication::activePopupWidget());
            QApplication::activePopupWidget()->close();
        }

        window.findChild<QAbstractButton*>(QStringLiteral("lanes"))->click();
        auto* lanes = window.findChild<PassLanesView*>();
        ASSERT_TRUE(lanes);
        visible.look(*lanes);
        for (const int key : {Qt::Key_Plus, Qt::Key_Minus, Qt::Key_0}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(lanes, &press);
            if (press.isAccepted()) visible.addKey(QKeySequence(key));
        }
        lanes->close();
        for (QAction* action : application.viewMenu().actions())
            if (action->text() == QLatin1String("&MIDI Monitor")) action->trigger();
        auto* monitor = window.findChild<MIDIMonitorView*>();
        ASSERT_TRUE(monitor);
        visible.look(*monitor);
        monitor->close();

        visible.look(*window.desk().stripMenu(QStringLiteral("input-1"), &window));
        auto* zero = window.findChild<ZeroConsoleMenu*>();
        visible.look(*zero);
        zero->ask(ResetTier::channelsOnly);
        lookAtDialog();
        auto* help = window.findChild<HelpMenu*>();
        help->openManual();
        visible.look(*help->view());
        help->view()->close();

        lookAtDialogsOf(
            [this] { application.session.open(QUrl::fromLocalFile(folder.filePath(QStringLiteral("none")))); });
        lookAtDialogsOf([this] {
            QDir gone(folder.filePath(QStringLiteral("gone")));
            ASSERT_TRUE(gone.mkpath(QStringLiteral(".")) && writeFile(gone.filePath(QStringLiteral("x.tessik")), "{}"));
            application.session.open(QUrl::fromLocalFile(gone.filePath(QStringLiteral("x.tessik"))));
            gone.removeRecursively();
            application.session.save();
            application.session.finishSaving();
        });
        lookAtDialogsOf([this] { application.dialogs.confirmOverwrite({}, {}); });
        lookAtDialogsOf([this] { application.dialogs.askUnsaved({}, {}); });
        lookAtDialogsOf([this] { application.dialogs.askTake({}, {}, QStringLiteral("Take")); });
        lookAtDialogsOf([this] { application.dialogs.askRecovery({}, {}); });
        lookAtDialogsOf([this] { application.dialogs.alertOfFile({}, {}, {}); });
    }

    QTemporaryDir folder;
    Rig rig;
    Application application{rig.service, folder.path()};
    Visible visible;
};

TEST_F(ManualMentionsTest, AllThatTheManualNamesIsThere) {
    lookAround();
    const ManualMentions mentions = manualMentions(manual());
    const QStringList chapters = HelpView(Look::of(ColorScheme::dark)).visibleTitles();
    const QStringList elsewhere{QStringLiteral("TessikAutomation"), SimulatedConsole::portName(),
                                SimulatedRecorder::portName};
    for (const QString& name : mentions.names)
        EXPECT_TRUE(elsewhere.contains(name) || visible.isName(name)) << qPrintable(name);
    for (const QString& text : mentions.texts)
        EXPECT_TRUE(elsewhere.contains(text) || chapters.contains(text) || visible.isSaid(text)) << qPrintable(text);
    EXPECT_FALSE(visible.isName(QStringLiteral("Save Everything")) || visible.isSaid(QStringLiteral("out of paper")));

    // Keys that belong to whatever has the keyboard.
    for (const char* key : {"Tab", "Shift+Tab", "Return", "Esc", "F2", "Delete"})
        visible.addKey(QKeySequence(QLatin1String(key)));
    const KeyboardArrowHandler& keys = application.window.keys;
    EXPECT_TRUE(keys.onLeft && keys.onRight && keys.onPlayStop && keys.onReturnToStart);
    for (const char* key : {"Left", "Right", "Space", "Enter"})
        visible.addKey(QKeySequence(QLatin1String(key)));
    for (const auto& [key, action] : keys.letters)
        visible.addKey(QKeySequence(key));
    const auto shortcuts = std::find_if(manual().begin(), manual().end(), [](const HelpTopic& topic) {
        return topic.title == QLatin1String("Keyboard Shortcuts");
    });
    std::set<std::pair<QString, QString>> listed;
    for (auto [key, action] : shortcutsMentioned(*shortcuts)) {
        EXPECT_TRUE(!action.isEmpty() && listed.emplace(key, action).second) << qPrintable(key);
        key.replace(u'←', QLatin1String("Left")).replace(u'→', QLatin1String("Right"));
        key.replace(u'↑', QLatin1String("Up")).replace(u'↓', QLatin1String("Down"));
        EXPECT_TRUE(visible.isKey(QKeySequence(key))) << qPrintable(key) << ": " << qPrintable(action);
    }
    EXPECT_GE(listed.size(), 25u);
    EXPECT_FALSE(visible.isKey(QKeySequence(QStringLiteral("Ctrl+J"))));

    // What is typed: to the rig, or as the value of a control.
    RigCommands commands(rig.desk, rig.recorder);
    static const QRegularExpression command(QStringLiteral("^(fader|scene) "));
    static const QRegularExpression number(QStringLiteral("^(L )?[0-9.]+k?$"));
    for (const QString& code : mentions.code) {
        if (command.match(code).hasMatch()) {
            EXPECT_EQ(commands.obey(code), QStringLiteral("ok")) << qPrintable(code);
        }
        if (number.match(code).hasMatch()) {
            EXPECT_TRUE(visible.isTyped(code)) << qPrintable(code);
        }
    }
}

} // namespace
} // namespace tessik
