#include "Support/SessionControllerFixture.h"

#include <sys/wait.h>
#include <unistd.h>

namespace tessik::test {
namespace {

TEST_F(SessionControllerTest, ReplacedSessionsOutliveTheRun) {
    const QString path = file("mix.tessik");
    saveAs(path);
    program->label("first");
    program->controller.newSession();
    time = 60;
    program->label("second");
    open(path);
    EXPECT_EQ(program->label(), QString());
    EXPECT_TRUE(program->controller.prepareToQuit());
    program = start();
    program->controller.offerRecovery();
    EXPECT_EQ(program->dialogs.taken(), QStringList()) << "neither a loss nor a crash";
    const std::vector<ReplacedSession> replaced = program->controller.replacedSessions();
    ASSERT_EQ(replacedNames(), (QStringList{QStringLiteral("Untitled"), QStringLiteral("mix")}));
    EXPECT_EQ(replaced[0].replacedAt, second(60));
    EXPECT_EQ(replaced[1].replacedAt, second(0));

    program->controller.reopen(replaced[1]);
    program->controller.finishSaving();
    EXPECT_EQ(program->label(), QStringLiteral("first"));
    EXPECT_TRUE(program->isDirty());
    EXPECT_EQ(replacedNames(), QStringList(QStringLiteral("Untitled"))) << "it is in the recovery file now";
    EXPECT_EQ(recoveryFiles().size(), 1);
    program->save();
    EXPECT_EQ(program->dialogs.taken(), QStringList()) << "knows where it belongs";
    EXPECT_EQ(labelOnDisk(path), QStringLiteral("first"));
    program->label("third");
    program->controller.reopen(replaced[0]);
    EXPECT_EQ(program->label(), QStringLiteral("second"));
    program->controller.finishSaving();
    EXPECT_EQ(replacedNames(), QStringList(QStringLiteral("mix"))) << "what it replaced is kept likewise";
    program->controller.reopen(replaced[0]); // is no longer there
    EXPECT_EQ(program->dialogs.taken().value(0), QStringLiteral("Couldn't open session | ") + replaced[0].file.path);
    EXPECT_EQ(program->label(), QStringLiteral("second"));

    program = start(); // as after a crash
    EXPECT_EQ(replacedNames(), QStringList(QStringLiteral("mix")));
    for (int i = 0; i < 11; ++i, ++time) {
        program->label("more");
        program->controller.newSession();
    }
    EXPECT_EQ(replacedNames().size(), 10);
    const QDir replacedFolder(recovery + QStringLiteral("/replaced"));
    EXPECT_EQ(replacedFolder.entryList({QStringLiteral("*.tessik")}).size(), 12);
    time = 60 + 5 + 30 * 24 * 3600;
    EXPECT_EQ(replacedNames().size(), 5) << "those of the last thirty days";
    program = start();
    program->controller.finishSaving();
    EXPECT_EQ(replacedFolder.entryList({QStringLiteral("*.tessik")}).size(), 5);
}

TEST_F(SessionControllerTest, ATakeStaysInTheSessionThatIsReplaced) {
    for (const bool isRecording : {false, true}) {
        program->take = PendingTake{take(0), {take(3).events}};
        program->take->pass.name = QStringLiteral("Verse");
        program->isRecording = isRecording;
        program->controller.noteTake();
        program->controller.newSession();
        program->controller.finishSaving();
        EXPECT_FALSE(program->take) << "it is never offered in another song";
        EXPECT_TRUE(program->passes.passes.value().isEmpty());
        EXPECT_EQ(recoveryFiles() + recoveryFiles("*.take"), QStringList());
        program->controller.reopen(program->controller.replacedSessions().at(0));
        ASSERT_EQ(program->passes.passes.value().size(), 1);
        EXPECT_EQ(program->passes.passes.value()[0].name, QStringLiteral("Verse"));
        EXPECT_EQ(program->passes.passes.value()[0].events.size(), 3);
        program->dialogs.unsaved = SessionDialogs::Unsaved::discard;
        EXPECT_TRUE(program->controller.prepareToQuit());
        program = start();
    }
}

TEST_F(SessionControllerTest, AsksBeforeItReplacesWhatCannotBeKept) {
    saveAs(file("mix.tessik"));
    ASSERT_TRUE(QDir().mkpath(recovery));
    ASSERT_TRUE(writeFile(recovery + QStringLiteral("/replaced"), "a file where the folder should be"));
    program->label("Kick");
    program->take = PendingTake{take(3), {}};
    const QStringList question{QStringLiteral("“mix” cannot be kept")};
    program->controller.newSession();
    EXPECT_EQ(program->dialogs.taken(), question);
    open(file("mix.tessik"));
    EXPECT_EQ(program->dialogs.taken(), question);
    EXPECT_EQ(program->label(), QStringLiteral("Kick"));
    EXPECT_TRUE(program->take);
    EXPECT_TRUE(program->isDirty());
    program->dialogs.overwrite = true;
    program->controller.newSession();
    EXPECT_EQ(program->label(), QString());
    EXPECT_FALSE(program->take);
}

TEST_F(SessionControllerTest, OffersWhatACrashLeftUntilItIsSavedOrRefused) {
    const QString path = file("mix.tessik");
    saveAs(path);
    program->label("unsaved");
    program->tick();
    // Ends like a crash: the lock goes with the process, the file stays.
    program = start();
    program->dialogs.recovery = [](const QString&) { return SessionDialogs::Recovery::later; };
    program->controller.offerRecovery();
    EXPECT_EQ(program->dialogs.taken(), QStringList(QStringLiteral("Recover “mix”?")));
    program->dialogs.recovery = [](const QString&) { return SessionDialogs::Recovery::recover; };
    program->controller.offerRecovery();
    EXPECT_EQ(program->label(), QStringLiteral("unsaved"));
    EXPECT_TRUE(program->isDirty());
    EXPECT_EQ(program->controller.fileURL.value(), QUrl::fromLocalFile(path));

    // Crashes again before anything was saved: still there, with what was changed since.
    program->label("more");
    program->tick();
    program = start();
    program->controller.offerRecovery();
    EXPECT_EQ(program->label(), QStringLiteral("more"));
    program->dialogs.taken();
    program->save(); // knows the file for its own, though another process opened it
    EXPECT_EQ(program->dialogs.taken(), QStringList());
    EXPECT_EQ(labelOnDisk(path), QStringLiteral("more"));
    EXPECT_EQ(recoveryFiles(), QStringList());

    program->label("refused");
    program->tick();
    program = start();
    program->dialogs.recovery = [](const QString&) { return SessionDialogs::Recovery::discard; };
    program->controller.offerRecovery();
    program->controller.finishSaving();
    EXPECT_EQ(recoveryFiles(), QStringList());
}

TEST_F(SessionControllerTest, NeverTakesTheFileOfARunningCopy) {
    program->label("mine");
    program->tick();
    auto other = start();
    other->controller.offerRecovery();
    EXPECT_EQ(other->dialogs.taken(), QStringList());
    other->label("theirs");
    other->tick();
    EXPECT_EQ(recoveryFiles().size(), 2);

    // A copy in another process holds its file until it is killed.
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto folderOfChild = RecoveryFolder::create(recovery);
        const RecoveryFile left{.folder = folderOfChild, .path = folderOfChild->path + QStringLiteral("/1.tessik")};
        SessionDocument document = sampleSession(1);
        if (!left.write(document, PendingTake{take(2), {}}, {}).isEmpty() || write(ready[1], "!", 1) != 1) _exit(1);
        for (;;)
            pause();
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_TRUE(findRecoveries(recovery).empty());
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
    const std::vector<RecoveryOffer> offers = findRecoveries(recovery);
    ASSERT_EQ(offers.size(), 1u);
    EXPECT_TRUE(findRecoveries(recovery).empty()); // while this one decides
    const SessionDocument recovered = onDisk(offers[0].file.path);
    EXPECT_EQ(recovered.passes.size(), 3);
    EXPECT_EQ(recovered.masterSection, sampleSession(1).masterSection);
}

TEST_F(SessionControllerTest, RecoveryHoldsTheTakeAndWritesOnlyChanges) {
    saveAs(file("mix.tessik"));
    const auto recovered = [this] { return recoveryFiles().value(0); };
    program->tick();
    EXPECT_EQ(recoveryFiles(), QStringList());
    program->take = PendingTake{take(0), {}};
    program->isRecording = true;
    program->tick(); // nothing of the session has changed, but a take is being recorded
    EXPECT_TRUE(onDisk(recovered()).passes.isEmpty());
    const std::optional<FileStamp> written = FileStamp::of(recovered());
    program->take->chunks = {take(3).events};
    program->tick();
    EXPECT_EQ(FileStamp::of(recovered()), written) << "a take that grows is the journal's";
    program->endTake();
    ASSERT_EQ(onDisk(recovered()).passes.size(), 1);
    EXPECT_EQ(onDisk(recovered()).passes[0].events.size(), 3);
    EXPECT_EQ(onDisk(recovered()).passes[0].events.first().frameOffset, 1); // in order
    EXPECT_NE(onDisk(recovered()).passes[0].name, QString());

    program->label("Kick"); // the take outlives a save
    program->save();
    EXPECT_EQ(onDisk(recovered()).passes.size(), 1);
    program->take.reset(); // discarded
    program->tick();
    EXPECT_EQ(recoveryFiles(), QStringList());
}

TEST_F(SessionControllerTest, AKillLeavesTheTakeUpToItsLastAppend) {
    const QString path = file("mix.tessik");
    saveAs(path);
    const auto begin = [this] {
        program->take = PendingTake{take(0), {}};
        program->controller.noteTake();
    };
    /// What the next start recovers, killed and started once more.
    const auto recovered = [&] {
        QList<TimedEvent> events;
        for (int i = 0; i < 2; ++i) {
            program = start();
            program->controller.offerRecovery();
            program->controller.finishSaving();
            EXPECT_EQ(program->controller.fileURL.value(), QUrl::fromLocalFile(path));
            const QList<AutomationPass> passes = program->passes.passes.value();
            EXPECT_EQ(passes.size(), 1);
            EXPECT_EQ(recoveryFiles("*.take"), QStringList()) << "its moves are in the recovery file now";
            if (!passes.isEmpty()) events = passes[0].events;
        }
        program->dialogs.unsaved = SessionDialogs::Unsaved::discard;
        EXPECT_TRUE(program->controller.prepareToQuit());
        program = start();
        open(path);
        return events;
    };
    begin();
    program->record(moves(0, 10));
    program->record(moves(10, 15));
    EXPECT_EQ(recovered(), moves(0, 15));

    begin(); // killed before the session had its first copy
    program->record(moves(0, 10));
    QFile::remove(recoveryFiles().value(0));
    EXPECT_EQ(recovered(), moves(0, 10));

    begin(); // ended, taken for a dropout, and going on
    program->record(moves(0, 10));
    program->endTake();
    EXPECT_EQ(recoveryFiles("*.take"), QStringList());
    program->record(moves(10, 20));
    EXPECT_EQ(recovered(), moves(0, 20));

    begin(); // somebody clears the folder away
    program->record(moves(0, 10));
    ASSERT_TRUE(QDir(recovery).removeRecursively());
    program->record(moves(10, 20));
    program->record(moves(20, 30));
    EXPECT_EQ(recovered(), moves(0, 30));

    begin(); // and one that the system ends
    program->record(moves(0, 10));
    program->take->chunks.append(moves(10, 12));
    program->controller.leave();
    EXPECT_EQ(recovered(), moves(0, 12));
}

TEST_F(SessionControllerTest, LeavesWithoutAQuestion) {
    program->dialogs.whereToSave = file("gone/mix.tessik");
    program->label("Kick");
    program->controller.saveAs(); // fails while the program leaves
    program->dialogs.taken();
    program->controller.leave();
    EXPECT_EQ(program->dialogs.taken(), QStringList());
    program = start();
    program->controller.offerRecovery();
    EXPECT_EQ(program->label(), QStringLiteral("Kick"));
    program->dialogs.whereToSave = file("mix.tessik");
    program->save();
    program->controller.leave();
    EXPECT_EQ(recoveryFiles(), QStringList()) << "nothing was unsaved";
}

TEST_F(SessionControllerTest, SaysWhenRecoveryFilesCannotBeWritten) {
    ASSERT_TRUE(writeFile(state, "a file where the folder should be"));
    program->label("Kick");
    program->tick();
    EXPECT_NE(program->controller.recoveryProblem.value(), QString());
    QFile::remove(state);
    program->tick();
    EXPECT_EQ(program->controller.recoveryProblem.value(), QString());
    EXPECT_EQ(recoveryFiles().size(), 1);

    ASSERT_TRUE(QDir(state).removeRecursively());
    program->label("Snare");
    program->tick();
    EXPECT_EQ(program->controller.recoveryProblem.value(), QString());
    ASSERT_EQ(recoveryFiles().size(), 1) << "a folder that somebody cleared away is made again";
    program = start();
    program->controller.offerRecovery();
    EXPECT_EQ(program->label(), QStringLiteral("Snare"));
}

TEST_F(SessionControllerTest, NamesADamagedRecoveryCopyAndLeavesIt) {
    program->label("Kick");
    program->tick();
    const QString copy = recoveryFiles().value(0);
    program = start();
    ASSERT_TRUE(writeFile(copy, "{\"formatVersion\": 1, "));
    program->controller.offerRecovery();
    EXPECT_EQ(program->dialogs.taken(), (QStringList{QStringLiteral("Recover “Untitled”?"),
                                                     QStringLiteral("Couldn't recover “Untitled” | ") + copy}));
    EXPECT_TRUE(QFile::exists(copy));
    EXPECT_FALSE(program->isDirty());
}

TEST_F(SessionControllerTest, RecoveryFilesAreInTheUsersStateFolder) {
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    const QString name = QStringLiteral("/tessik-automation/recovery");
    for (const auto& [variable, wanted] : {std::pair("/somewhere", QStringLiteral("/somewhere")),
                                           {"", QDir::homePath() + QStringLiteral("/.local/state")},
                                           {"some/where", QDir::homePath() + QStringLiteral("/.local/state")}}) {
        qputenv("XDG_STATE_HOME", variable);
        EXPECT_EQ(RecoveryFolder::defaultRoot(), wanted + name) << variable;
    }
    before.isNull() ? qunsetenv("XDG_STATE_HOME") : qputenv("XDG_STATE_HOME", before);
}

} // namespace
} // namespace tessik::test
