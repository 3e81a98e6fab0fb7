#include "Support/Sessions.h"
#include "TessikAutomation/Application/ApplicationFixture.h"
#include "TessikAutomation/Application/EndSignals.h"
#include "TessikAutomation/Session/SessionFile.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"
#include "TessikAutomation/Views/Controls/Popover.h"
#include "TessikAutomation/Views/RigPane.h"
#include "TessikAutomation/Views/Window/HeaderTitle.h"

#include <QAbstractButton>
#include <QDirIterator>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>

#include <csignal>

namespace tessik {
namespace {

AutomationPass pass(const char* name) {
    return {.id = QUuid::createUuid(), .name = QLatin1String(name), .createdAt = currentSecond()};
}

TEST_F(ApplicationTest, TheTitleNamesWhatWasRecalledLast) {
    const auto title = [this] { return application.window.windowTitle(); };
    const auto undo = [this] { QTest::keyClick(application.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier); };
    const QString nothing = QStringLiteral("Untitled[*]");
    EXPECT_EQ(title(), nothing);
    const AutomationPass verse = pass("Verse [*]");
    application.passes.save(verse);
    application.passEngine.select(verse);
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Pass: Verse [*][*]"));
    application.passes.rename(verse.id, QStringLiteral("Chorus"));
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Pass: Chorus"));
    application.window.deselectKey().click();
    EXPECT_EQ(title(), nothing);
    EXPECT_TRUE(application.window.deselectKey().isHidden());

    const QString low = QStringLiteral("Untitled[*]  —  Snapshot: Low");
    application.snapshots.save(application.snapshotRecall.capture(QStringLiteral("Low"), currentSecond()));
    activate(application.window);
    application.window.findChild<QAbstractButton*>(QStringLiteral("recall"))->click();
    application.passEngine.select(std::nullopt);
    EXPECT_EQ(title(), low) << "no pass was let go of";
    application.window.findChild<QAbstractButton*>(QStringLiteral("trash"))->click();
    EXPECT_EQ(title(), nothing) << "what is gone is not named";
    undo();
    EXPECT_EQ(title(), low);
    application.session.newSession();
    EXPECT_EQ(title(), nothing);
    undo();
    EXPECT_TRUE(application.snapshots.snapshots.value().isEmpty()) << "nothing of another session comes back";
}

TEST_F(ApplicationTest, WhatACrashLeftIsOfferedOverTheSessionThatTheProgramWasStartedWith) {
    SessionDocument crashed = SessionDocument::empty(currentSecond());
    crashed.passes = {pass("Crashed")};
    SessionDocument asked = crashed;
    asked.passes = {pass("Asked for")};
    const QString file = folder.filePath(QStringLiteral("asked.tessik"));
    ASSERT_EQ(writeSessionFile(file, PreviousFile::drop, asked).error, QString());
    {
        const auto left = RecoveryFolder::create(folder.path());
        ASSERT_EQ((RecoveryFile{left, left->path + QStringLiteral("/1.tessik")}.write(crashed, {}, {})), QString());
    }
    QTimer::singleShot(0, &application.window, [&] {
        EXPECT_EQ(application.passes.passes.value(), asked.passes) << "what is there when the question comes";
        auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(question);
        for (QAbstractButton* button : question->buttons())
            if (button->text() == QLatin1String("Recover")) return button->click();
    });
    application.begin(file);
    EXPECT_EQ(application.passes.passes.value(), crashed.passes);
    EXPECT_TRUE(application.session.hasUnsavedChanges.value());
}

TEST_F(ApplicationTest, TheWindowComesBackWhereItWasClosed) {
    application.showWindow();
    const QRect first = application.window.screen()->availableGeometry().adjusted(80, 80, -80, -80);
    EXPECT_EQ(application.window.geometry().topLeft(), first.topLeft());
    application.window.setGeometry(20, 40, 1100, 620);
    QApplication::processEvents();
    application.window.close();
    Application next(service, folder.path());
    next.showWindow();
    // Up and down only: the screen of a test is narrower than the window, and Qt 6.8 fits it across.
    EXPECT_EQ(next.window.geometry().top(), 40);
    EXPECT_EQ(next.window.height(), 620);
}

TEST_F(ApplicationTest, TheHeaderNeverSaysSavedWhileATakeWaits) {
    const auto header = [this] { return application.window.findChild<HeaderTitle*>()->accessibleName(); };
    const AutomationPass verse = pass("Verse");
    const AutomationPass take = pass("Nov 23, 9:05 PM");
    const QString path = folder.filePath(QStringLiteral("Mix.tessik"));
    ASSERT_TRUE(writeFile(path, "{}"));
    application.session.open(QUrl::fromLocalFile(path));
    application.passes.save(verse);
    application.passEngine.select(verse);
    application.session.save();
    application.session.finishSaving();
    EXPECT_EQ(header(), QStringLiteral("Mix, Pass: Verse, saved"));
    application.passEngine.restoreTake(take);
    EXPECT_EQ(header(), QStringLiteral("Mix, Take, not saved"));
    EXPECT_TRUE(application.window.isWindowModified());
    application.passEngine.compare(true);
    EXPECT_EQ(header(), QStringLiteral("Mix, Pass: Verse, take not saved"));
    application.passEngine.discardTake();
    EXPECT_EQ(header(), QStringLiteral("Mix, Pass: Verse, saved"));
    application.passEngine.restoreTake(take);
    application.passEngine.finishRecording(QStringLiteral("Kept"), application.passes);
    EXPECT_EQ(header(), QStringLiteral("Mix, Pass: Kept, edited"));
}

TEST_F(ApplicationTest, ATakeIsInTheRecoveryFileOnceItEndsAndAsLongAsItWaits) {
    const auto recovered = [this] { // names of the passes in the recovery file
        application.session.finishSaving();
        QDirIterator files(folder.path(), {QStringLiteral("*.tessik")}, QDir::Files, QDirIterator::Subdirectories);
        QStringList names;
        while (files.hasNext()) {
            const auto document = readSession(files.next(), currentSecond()).document.value();
            for (const AutomationPass& pass : document.passes)
                names.append(pass.name);
        }
        return names;
    };
    application.passEngine.restoreTake(pass("Take"));
    EXPECT_EQ(recovered(), QStringList{QStringLiteral("Take")});
    application.passEngine.select(pass("Another"));
    application.session.recoveryTick();
    EXPECT_EQ(recovered(), QStringList{QStringLiteral("Take")});
    application.passEngine.onTakeSuperseded(*application.passEngine.recordingPass.value());
    application.passEngine.discardTake();
    application.passEngine.restoreTake(pass("Next"));
    EXPECT_EQ(recovered(), (QStringList{QStringLiteral("Next"), QStringLiteral("Take")}));
    application.passEngine.discardTake();
    application.session.recoveryTick();
    EXPECT_EQ(recovered(), QStringList{QStringLiteral("Take")});
}

TEST_F(ApplicationTest, TheFileMenuHasWhatWasReplacedWithItsTake) {
    application.passEngine.restoreTake(pass("Take"));
    application.session.newSession();
    EXPECT_FALSE(application.passEngine.recordingPass.value()) << "it belongs to another song";
    EXPECT_TRUE(application.passes.passes.value().isEmpty());
    const QList<QMenu*> menus = application.window.findChildren<QMenu*>();
    const auto found = std::find_if(menus.begin(), menus.end(), [](const QMenu* menu) {
        return menu->title() == QLatin1String("Re&placed Sessions");
    });
    ASSERT_NE(found, menus.end());
    Q_EMIT(*found)->aboutToShow();
    ASSERT_EQ((*found)->actions().size(), 1);
    (*found)->actions()[0]->trigger();
    ASSERT_EQ(application.passes.passes.value().size(), 1);
    EXPECT_EQ(application.passes.passes.value()[0].name, QStringLiteral("Take"));
}

TEST(EndSignals, AreToldOnTheMainThreadOnce) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::vector<int> told;
        const EndSignals signals([&told](int each) { told.push_back(each); });
        std::raise(signal);
        EXPECT_EQ(told, std::vector<int>()) << "not where it came";
        QCoreApplication::processEvents();
        EXPECT_EQ(told, std::vector{signal});
        EXPECT_EXIT(std::raise(signal), testing::KilledBySignal(signal), "") << "nobody waits for a program that hangs";
    }
}

/// What a screen reader on Linux cannot tell, or would read as nothing, in an object and all below it.
QStringList unspoken(QAccessibleInterface* object, const QString& path = {}) {
    static const QSet<QAccessible::Role> told{
        QAccessible::Window,      QAccessible::Client,    QAccessible::StaticText,   QAccessible::PushButton,
        QAccessible::CheckBox,    QAccessible::StatusBar, QAccessible::Graphic,      QAccessible::Grouping,
        QAccessible::Dial,        QAccessible::Slider,    QAccessible::EditableText, QAccessible::ScrollBar,
        QAccessible::RadioButton, QAccessible::MenuBar,   QAccessible::MenuItem,     QAccessible::PopupMenu,
        QAccessible::Separator,   QAccessible::Pane,      QAccessible::LayeredPane,  QAccessible::Border};
    static const QSet<QAccessible::Role> named{
        QAccessible::PushButton, QAccessible::CheckBox,     QAccessible::StatusBar,  QAccessible::Dial,
        QAccessible::Slider,     QAccessible::EditableText, QAccessible::RadioButton};
    const QString name = object->text(QAccessible::Name);
    const QString here = path + QLatin1Char('/') + name;
    QStringList found;
    if (!told.contains(object->role())) found << here + QStringLiteral(": role %1").arg(object->role());
    if (named.contains(object->role()) && name.isEmpty() && !object->state().invisible)
        found << here + QStringLiteral(": no name");
    for (int i = 0; i < object->childCount(); ++i)
        if (QAccessibleInterface* child = object->child(i)) found << unspoken(child, here);
    return found;
}

TEST_F(ApplicationTest, AScreenReaderHearsOfEverythingByNameAndRole) {
    SimulatedConsole desk(service);
    const std::unique_ptr<RigPane> pane(new RigPane(desk, application.window));
    activate(application.window);
    const auto popovers = application.window.findChildren<Popover*>();
    EXPECT_GE(popovers.size(), 3);
    for (Popover* popover : popovers) {
        popover->open();
        EXPECT_EQ(unspoken(QAccessible::queryAccessibleInterface(&application.window)), QStringList());
        EXPECT_NE(QAccessible::queryAccessibleInterface(popover)->text(QAccessible::Name), QString());
        popover->close();
    }
}

} // namespace
} // namespace tessik
