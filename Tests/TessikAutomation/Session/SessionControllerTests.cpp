#include "Support/SessionControllerFixture.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Session/SessionFile.h"

namespace tessik::test {
namespace {

TEST_F(SessionControllerTest, EveryStoreMarksTheSessionAndNewBeginsCleanAndUntitled) {
    const std::vector<std::function<void()>> changes{
        [&] { program->snapshots.setDefault(QUuid()); },
        [&] { program->passes.remove(QUuid()); },
        [&] { program->manualSettings.box(QStringLiteral("x")).edit(&ManualChannelSettings::pad, true); },
        [&] { program->channelLabels.resetAll(); },
        [&] { program->masterSection.setSettings({.crMono = true}); },
        [&] { program->locators.setEnd(std::nullopt); }};
    for (const auto& change : changes) {
        EXPECT_FALSE(program->isDirty());
        change();
        EXPECT_TRUE(program->isDirty());
        program->controller.newSession();
    }
    EXPECT_EQ(program->controller.displayName(), QStringLiteral("Untitled"));
    EXPECT_EQ(program->loaded, 6);
    EXPECT_EQ(program->dialogs.taken(), QStringList()); // without a question
}

TEST_F(SessionControllerTest, OpensAndSavesEveryStore) {
    const SessionDocument session = sampleSession(3);
    const QString path = file("Mix 3.tessik");
    ASSERT_EQ(writeSessionFile(path, PreviousFile::drop, session).error, QString());
    bool wasDirty = false;
    program->controller.onSessionLoaded = [&] {
        program->label("changed by the handler");
        wasDirty = program->isDirty();
    };
    program->dialogs.toOpen = path;
    program->controller.open();
    EXPECT_EQ(program->dialogs.taken(), QStringList(QStringLiteral("Open a Tessik session")));
    EXPECT_TRUE(wasDirty);
    EXPECT_FALSE(program->isDirty()); // what loading causes does not count
    EXPECT_EQ(program->controller.displayName(), QStringLiteral("Mix 3"));
    program->controller.finishSaving();
    EXPECT_EQ(SavedSettings::recentSessions().value(0), path);

    program->controller.onSessionLoaded = nullptr;
    open(path);
    time = 500;
    const QString other = file("other.tessik");
    saveAs(file("other")); // gets the extension
    EXPECT_EQ(program->controller.fileURL.value(), QUrl::fromLocalFile(other));
    EXPECT_EQ(SavedSettings::recentSessions().value(0), other);
    SessionDocument expected = session;
    std::stable_sort(expected.snapshots.begin(), expected.snapshots.end(),
                     [](auto& a, auto& b) { return a.createdAt > b.createdAt; });
    std::stable_sort(expected.passes.begin(), expected.passes.end(),
                     [](auto& a, auto& b) { return a.createdAt > b.createdAt; });
    expected.modifiedAt = second(500);
    EXPECT_EQ(onDisk(other), expected);
}

TEST_F(SessionControllerTest, AFileThatCannotBeOpenedChangesNothing) {
    saveAs(file("good.tessik"));
    program->label("Kick");
    ASSERT_TRUE(writeFile(file("bad.tessik"), "{\"snapshots\": [}"));
    for (const QString& path : {file("bad.tessik"), file("absent"), folder.path()}) {
        open(path);
        EXPECT_TRUE(
            program->dialogs.taken().value(0).startsWith(QStringLiteral("Couldn't open session | “%1”: ").arg(path)));
    }
    program->controller.open(QUrl(QStringLiteral("https://example.org/a.tessik")));
    EXPECT_EQ(program->dialogs.taken().size(), 1);
    EXPECT_EQ(program->label(), QStringLiteral("Kick"));
    EXPECT_EQ(program->controller.displayName(), QStringLiteral("good"));
    EXPECT_TRUE(program->isDirty());
    EXPECT_EQ(program->loaded, 0);
}

TEST_F(SessionControllerTest, AChangeDuringASaveLeavesTheSessionUnsaved) {
    const QString path = file("mix.tessik");
    program->dialogs.whereToSave = path;
    program->label("one");
    program->controller.save(); // has no file yet: asks where
    EXPECT_TRUE(program->controller.isSaving.value());
    program->label("two");
    program->controller.finishSaving();
    EXPECT_TRUE(program->isDirty());
    EXPECT_EQ(labelOnDisk(path), QStringLiteral("one"));
    EXPECT_EQ(program->dialogs.taken(), QStringList(QStringLiteral("save as Untitled.tessik")));

    // Saves asked for while one runs become one, with what the stores hold when it begins.
    program->controller.save();
    program->controller.save();
    program->label("three");
    program->save();
    EXPECT_FALSE(program->isDirty());
    EXPECT_EQ(labelOnDisk(path), QStringLiteral("three"));
    EXPECT_EQ(labelOnDisk(path + QLatin1Char('~')), QStringLiteral("two"));
}

TEST_F(SessionControllerTest, AFailedSaveIsToldAndLosesNothing) {
    const QString path = file("mix.tessik");
    saveAs(path);
    program->label("Kick");
    program->dialogs.whereToSave = file("gone/mix.tessik");
    program->controller.saveAs();
    program->controller.finishSaving();
    const QStringList told = program->dialogs.taken();
    EXPECT_TRUE(told.value(1).startsWith(QStringLiteral("Couldn't save session | “")))
        << qUtf8Printable(told.join(u'\n'));
    EXPECT_TRUE(program->isDirty());
    EXPECT_EQ(program->controller.fileURL.value(), QUrl::fromLocalFile(path));
    EXPECT_TRUE(onDisk(path).channelLabels.isEmpty());
}

TEST_F(SessionControllerTest, AsksBeforeItWritesOverWhatIsNotItsOwn) {
    const QString path = file("mix.tessik");
    saveAs(path);
    program->label("mine");
    ASSERT_TRUE(writeFile(path, "{\"formatVersion\": 5}"));
    program->controller.save();
    EXPECT_FALSE(program->controller.isSaving.value());
    EXPECT_EQ(program->dialogs.taken(), QStringList(QStringLiteral("“mix” was changed by another program")));
    program->dialogs.overwrite = true;
    program->save();
    EXPECT_EQ(labelOnDisk(path), QStringLiteral("mine"));
    EXPECT_EQ(onDisk(path + QLatin1Char('~')).formatVersion, 5);
    program->dialogs.taken();
    program->save(); // is its own now
    QFile::remove(path);
    program->save(); // nothing there to write over
    EXPECT_EQ(program->dialogs.taken(), QStringList());

    // The panel asked about "mix", and "mix.tessik" is what would be replaced.
    program->dialogs.overwrite = false;
    program->dialogs.whereToSave = file("mix");
    program->controller.saveAs();
    EXPECT_FALSE(program->controller.isSaving.value());
    EXPECT_EQ(program->dialogs.taken().value(1), QStringLiteral("“mix.tessik” already exists"));
}

TEST_F(SessionControllerTest, QuittingAsksWhereSomethingWouldBeLost) {
    EXPECT_TRUE(program->controller.prepareToQuit());
    EXPECT_EQ(program->dialogs.taken(), QStringList());
    program->label("Kick");
    program->tick();
    EXPECT_FALSE(program->controller.prepareToQuit()); // cancelled
    program->dialogs.unsaved = SessionDialogs::Unsaved::save;
    EXPECT_FALSE(program->controller.prepareToQuit()); // the panel was cancelled
    program->dialogs.whereToSave = file("gone/mix.tessik");
    EXPECT_FALSE(program->controller.prepareToQuit()); // the save failed
    EXPECT_EQ(recoveryFiles().size(), 1);
    program->dialogs.whereToSave = file("mix.tessik");
    program->take = PendingTake{take(3), {}};
    program->dialogs.taken();
    EXPECT_FALSE(program->controller.prepareToQuit()); // cancelled, before anything else is asked
    const QString ofTake = QStringLiteral("Save the take?");
    EXPECT_EQ(program->dialogs.taken(), QStringList{ofTake});
    program->dialogs.ofTake = SessionDialogs::Unsaved::discard;
    program->dialogs.unsaved = SessionDialogs::Unsaved::cancel;
    EXPECT_FALSE(program->controller.prepareToQuit());
    EXPECT_EQ(program->dialogs.taken(), (QStringList{ofTake, QStringLiteral("Save the changes of “Untitled”?")}));
    EXPECT_TRUE(program->take) << "still there when the user stays";
    program->dialogs.ofTake = SessionDialogs::Unsaved::save;
    EXPECT_TRUE(program->controller.prepareToQuit());
    EXPECT_FALSE(program->dialogs.taken().contains(QStringLiteral("Save the changes of “Untitled”?")));
    ASSERT_EQ(onDisk(file("mix.tessik")).passes.size(), 1);
    EXPECT_TRUE(onDisk(file("mix.tessik")).passes[0].name.endsWith(QStringLiteral(" named")));
    EXPECT_EQ(recoveryFiles(), QStringList());

    program->label("lost on purpose");
    program->tick();
    program->dialogs.unsaved = SessionDialogs::Unsaved::discard;
    EXPECT_TRUE(program->controller.prepareToQuit());
    program->controller.leave(); // as the program does then
    program = start();
    program->controller.offerRecovery();
    EXPECT_EQ(program->dialogs.taken(), QStringList());
    EXPECT_TRUE(QDir(recovery).isEmpty());
}

} // namespace
} // namespace tessik::test
