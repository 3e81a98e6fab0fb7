#include "Support/Sessions.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Session/SessionController.h"
#include "TessikAutomation/Session/SessionFile.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace tessik {
namespace {

/// Answers as told, and writes down what was asked.
struct ScriptedDialogs final : SessionDialogs {
    std::optional<QString> toOpen;
    std::optional<QString> whereToSave;
    bool overwrite = false;
    Unsaved unsaved = Unsaved::cancel;
    Unsaved ofTake = Unsaved::cancel;
    std::function<Recovery(const QString& text)> recovery = [](const QString&) { return Recovery::recover; };
    QStringList log;

    std::optional<QString> chooseSessionToOpen(const QString& message) override {
        log += message;
        return toOpen;
    }
    std::optional<QString> chooseWhereToSave(const QString& proposed) override {
        log += QStringLiteral("save as ") + proposed;
        return whereToSave;
    }
    void alert(const QString& title, const QString& text) override { log += title + QStringLiteral(" | ") + text; }
    bool confirmOverwrite(const QString& title, const QString&) override {
        log += title;
        return overwrite;
    }
    Unsaved askUnsaved(const QString& title, const QString&) override {
        log += title;
        return unsaved;
    }
    TakeAnswer askTake(const QString& title, const QString&, const QString& proposedName) override {
        log += title;
        return {ofTake, proposedName + QStringLiteral(" named")};
    }
    Recovery askRecovery(const QString& title, const QString&) override {
        log += title;
        return recovery(title);
    }
    QStringList taken() { return std::exchange(log, {}); }
};

/// A running copy of the program, as far as sessions go.
struct Copy {
    SnapshotStore snapshots;
    PassStore passes;
    ManualSettingsStore manualSettings;
    ChannelLabelStore channelLabels;
    MasterSectionStore masterSection;
    LocatorStore locators;
    ScriptedDialogs dialogs;
    SessionController controller;
    int loaded = 0;

    Copy(const QString& recoveryRoot, WallClock clock)
        : controller({snapshots, passes, manualSettings, channelLabels, masterSection, locators}, dialogs, recoveryRoot,
                     std::move(clock)) {
        controller.onSessionLoaded = [this] { ++loaded; };
    }
    void label(const char* name) { channelLabels.update({QString::fromLatin1(name), {}}, QStringLiteral("input-1")); }
    QString label() const { return channelLabels.labelsByChannelID.value().value(QStringLiteral("input-1")).name; }
    void save() {
        controller.save();
        controller.finishSaving();
    }
    bool isDirty() const { return controller.hasUnsavedChanges.value(); }
    void tick() {
        controller.recoveryTick();
        controller.finishSaving();
    }
};

struct SessionControllerTest : testing::Test {
    QTemporaryDir folder;
    const QString recovery = folder.filePath(QStringLiteral("state/recovery"));
    qint64 time = 0;
    std::unique_ptr<Copy> program = start();

    std::unique_ptr<Copy> start() {
        return std::make_unique<Copy>(recovery, [this] { return second(time); });
    }
    QString file(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }
    void open(const QString& path) { program->controller.open(QUrl::fromLocalFile(path)); }
    SessionDocument onDisk(const QString& path) const {
        const SessionReadResult result = readSession(path, second(-1));
        EXPECT_TRUE(result.document) << qUtf8Printable(result.error);
        return result.document.value_or(SessionDocument());
    }
    /// Saves under a new name, which must succeed.
    void saveAs(const QString& path) {
        program->dialogs.whereToSave = path;
        program->controller.saveAs();
        program->controller.finishSaving();
        EXPECT_FALSE(program->isDirty());
        program->dialogs.taken();
    }
    QString labelOnDisk(const QString& path) const {
        return onDisk(path).channelLabels.value(QStringLiteral("input-1")).name;
    }
    qsizetype recoveryFiles() const {
        qsizetype count = 0;
        for (const QString& name : QDir(recovery).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            count += QDir(recovery + QLatin1Char('/') + name).entryList({QStringLiteral("*.tessik")}).size();
        return count;
    }
    AutomationPass take(int events) const {
        AutomationPass pass{.id = QUuid(QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}")),
                            .createdAt = second(5)};
        for (int i = 0; i < events; ++i)
            pass.events.append({events - i, ChannelKind::input(1), PassEventValue::fader(i)});
        return pass;
    }
};

TEST_F(SessionControllerTest, BeginsCleanAndUntitled) {
    EXPECT_EQ(program->controller.displayName(), QStringLiteral("Untitled"));
    EXPECT_FALSE(program->isDirty());
    int notices = 0;
    const auto notifier = program->controller.hasUnsavedChanges.addNotifier([&] { ++notices; });
    program->label("Kick");
    program->label("Snare");
    EXPECT_TRUE(program->isDirty());
    EXPECT_EQ(notices, 1);
    program->controller.newSession();
    EXPECT_FALSE(program->isDirty());
    EXPECT_EQ(notices, 2);
    EXPECT_EQ(program->label(), QString());
    EXPECT_EQ(program->loaded, 1);
    EXPECT_EQ(program->dialogs.taken(), QStringList()); // without a question
}

TEST_F(SessionControllerTest, EveryStoreMarksTheSession) {
    const std::vector<std::function<void()>> changes{
        [&] { program->snapshots.setDefault(QUuid()); },
        [&] { program->passes.remove(QUuid()); },
        [&] { program->manualSettings.box(QStringLiteral("x")).edit(&ManualChannelSettings::pad, true); },
        [&] { program->channelLabels.resetAll(); },
        [&] { program->masterSection.setSettings({.crMono = true}); },
        [&] { program->locators.setEnd(std::nullopt); }};
    for (const auto& change : changes) {
        change();
        EXPECT_TRUE(program->isDirty());
        program->controller.newSession();
    }
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
    EXPECT_EQ(program->dialogs.taken(), QStringList(QStringLiteral("Open an Tessik session")));
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

TEST_F(SessionControllerTest, ReplacedSessionsCanBeHadBack) {
    const QString path = file("mix.tessik");
    saveAs(path);
    program->label("first");
    program->controller.newSession();
    EXPECT_TRUE(program->controller.hasReplacedSession.value());
    program->label("second");
    open(path);
    EXPECT_EQ(program->label(), QString());
    program->controller.finishSaving();
    EXPECT_EQ(recoveryFiles(), 2);

    program->controller.reopenReplacedSession();
    EXPECT_EQ(program->label(), QStringLiteral("second"));
    EXPECT_EQ(program->controller.fileURL.value(), std::nullopt);
    program->controller.reopenReplacedSession(); // keeps the one on screen in its turn
    EXPECT_EQ(program->label(), QStringLiteral("first"));
    EXPECT_EQ(program->controller.displayName(), QStringLiteral("mix"));
    EXPECT_TRUE(program->isDirty());
    program->save();
    EXPECT_EQ(program->dialogs.taken(), QStringList()); // knows where it belongs
    EXPECT_EQ(labelOnDisk(path), QStringLiteral("first"));
    program->controller.reopenReplacedSession();
    EXPECT_EQ(program->label(), QStringLiteral("second"));
    EXPECT_FALSE(program->controller.hasReplacedSession.value());
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
    EXPECT_EQ(recoveryFiles(), 1);
    program->dialogs.whereToSave = file("mix.tessik");
    std::optional<PendingTake> waiting = PendingTake{take(3), {}};
    program->controller.pendingTake = [&] { return waiting; };
    program->controller.storePendingTake = [&](const QString& name) {
        AutomationPass named = waiting->finished();
        named.name = name;
        program->passes.save(named);
        waiting.reset();
    };
    program->dialogs.taken();
    EXPECT_FALSE(program->controller.prepareToQuit()); // cancelled, before anything else is asked
    const QString ofTake = QStringLiteral("Save the take?");
    EXPECT_EQ(program->dialogs.taken(), QStringList{ofTake});
    program->dialogs.ofTake = SessionDialogs::Unsaved::discard;
    program->dialogs.unsaved = SessionDialogs::Unsaved::cancel;
    EXPECT_FALSE(program->controller.prepareToQuit());
    EXPECT_EQ(program->dialogs.taken(), (QStringList{ofTake, QStringLiteral("Save the changes of “Untitled”?")}));
    EXPECT_TRUE(waiting) << "still there when the user stays";
    program->dialogs.ofTake = SessionDialogs::Unsaved::save;
    EXPECT_TRUE(program->controller.prepareToQuit());
    EXPECT_FALSE(program->dialogs.taken().contains(QStringLiteral("Save the changes of “Untitled”?")));
    ASSERT_EQ(onDisk(file("mix.tessik")).passes.size(), 1);
    EXPECT_TRUE(onDisk(file("mix.tessik")).passes[0].name.endsWith(QStringLiteral(" named")));
    EXPECT_EQ(recoveryFiles(), 0);

    program->label("lost on purpose");
    program->tick();
    program->dialogs.unsaved = SessionDialogs::Unsaved::discard;
    EXPECT_TRUE(program->controller.prepareToQuit());
    program = start();
    program->controller.offerRecovery();
    EXPECT_EQ(program->dialogs.taken(), QStringList());
    EXPECT_TRUE(QDir(recovery).isEmpty());
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
    EXPECT_EQ(recoveryFiles(), 0);

    program->label("refused");
    program->tick();
    program = start();
    program->dialogs.recovery = [](const QString&) { return SessionDialogs::Recovery::discard; };
    program->controller.offerRecovery();
    program->controller.finishSaving();
    EXPECT_EQ(recoveryFiles(), 0);
}

TEST_F(SessionControllerTest, NeverTakesTheFileOfARunningCopy) {
    program->label("mine");
    program->tick();
    auto other = start();
    other->controller.offerRecovery();
    EXPECT_EQ(other->dialogs.taken(), QStringList());
    other->label("theirs");
    other->tick();
    EXPECT_EQ(recoveryFiles(), 2);

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
    const QString path = file("mix.tessik");
    saveAs(path);
    const auto recovered = [this] {
        const QDir root(recovery);
        const QString own = root.filePath(root.entryList(QDir::Dirs | QDir::NoDotAndDotDot).value(0));
        return QDir(own).entryInfoList({QStringLiteral("*.tessik")}).value(0).filePath();
    };
    program->tick();
    EXPECT_EQ(recoveryFiles(), 0);
    std::optional<PendingTake> waiting = PendingTake{take(0), {take(3).events}};
    program->controller.pendingTake = [&] { return waiting; };
    program->tick(); // nothing of the session has changed, but a take is being recorded
    ASSERT_EQ(onDisk(recovered()).passes.size(), 1);
    EXPECT_EQ(onDisk(recovered()).passes[0].events.first().frameOffset, 1); // in order
    EXPECT_NE(onDisk(recovered()).passes[0].name, QString());

    const std::optional<FileStamp> written = FileStamp::of(recovered());
    program->tick();
    EXPECT_EQ(FileStamp::of(recovered()), written);
    waiting->rides.emplace(); // over another pass: its end moves on, also while a ride holds without events
    program->tick();
    const std::optional<FileStamp> ridden = FileStamp::of(recovered());
    EXPECT_NE(ridden, written);
    waiting->rides->end = 20;
    program->tick();
    EXPECT_NE(FileStamp::of(recovered()), ridden);
    waiting->rides.reset();
    waiting->chunks.append({{9, ChannelKind::stereo(), PassEventValue::fader(1)}});
    program->controller.takeEnded();
    program->controller.finishSaving();
    EXPECT_EQ(onDisk(recovered()).passes[0].events.size(), 4);

    // The take outlives a save and a new session; what it is stored in replaces it.
    program->label("Kick");
    program->save();
    EXPECT_EQ(onDisk(recovered()).passes.size(), 1);
    program->controller.newSession();
    program->controller.finishSaving();
    EXPECT_EQ(recoveryFiles(), 1);
    EXPECT_EQ(onDisk(recovered()).passes.size(), 1);
    EXPECT_TRUE(onDisk(recovered()).channelLabels.isEmpty());
    waiting.reset(); // discarded
    program->tick();
    EXPECT_EQ(recoveryFiles(), 0);
}

TEST_F(SessionControllerTest, SaysWhenRecoveryFilesCannotBeWritten) {
    ASSERT_TRUE(writeFile(folder.filePath(QStringLiteral("state")), "a file where the folder should be"));
    program->label("Kick");
    program->tick();
    EXPECT_NE(program->controller.recoveryProblem.value(), QString());
    QFile::remove(folder.filePath(QStringLiteral("state")));
    program->tick();
    EXPECT_EQ(program->controller.recoveryProblem.value(), QString());
    EXPECT_EQ(recoveryFiles(), 1);
}

} // namespace
} // namespace tessik
