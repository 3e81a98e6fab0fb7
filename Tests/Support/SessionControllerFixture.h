#pragma once

#include "Support/Sessions.h"
#include "TessikAutomation/Session/SessionController.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessik::test {

/// Answers as told, and records what was asked.
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
    void alertOfFile(const QString& title, const QString&, const QString& path) override {
        log += title + QStringLiteral(" | ") + path;
    }
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
    std::optional<PendingTake> take;
    bool isRecording = false;

    Copy(const QString& recoveryRoot, WallClock clock)
        : controller({snapshots, passes, manualSettings, channelLabels, masterSection, locators}, dialogs, recoveryRoot,
                     std::move(clock)) {
        controller.onSessionLoaded = [this] { ++loaded; };
        controller.pendingTake = [this] { return take; };
        controller.isRecordingTake = [this] { return isRecording; };
        controller.storePendingTake = [this](const QString& name) {
            AutomationPass named = take->finished();
            named.name = name;
            take.reset();
            isRecording = false;
            passes.save(named);
        };
    }
    void label(const char* name) { channelLabels.update({QString::fromLatin1(name), {}}, QStringLiteral("input-1")); }
    QString label() const { return channelLabels.labelsByChannelID.value().value(QStringLiteral("input-1")).name; }
    void save() {
        controller.save();
        controller.finishSaving();
    }
    bool isDirty() const { return controller.hasUnsavedChanges.value(); }
    void tick() {
        controller.finishSaving();
        controller.recoveryTick();
        controller.finishSaving();
    }
    /// Records as the user would, including what follows within half a second.
    void record(const QList<TimedEvent>& moves) {
        isRecording = true;
        take->chunks.append(moves);
        controller.journalTick();
        controller.finishSaving();
    }
    void endTake() {
        isRecording = false;
        take = PendingTake{take->finished(), {}};
        controller.noteTake();
        controller.finishSaving();
    }
};

struct SessionControllerTest : testing::Test {
    QTemporaryDir folder;
    const QString state = folder.filePath(QStringLiteral("%1 and %2")); // no name may take another's place in a text
    const QString recovery = state + QStringLiteral("/recovery");
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
    /// Excludes those of replaced sessions.
    QStringList recoveryFiles(const char* pattern = "*.tessik") const {
        QStringList files;
        for (const QFileInfo& run : QDir(recovery).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
            if (run.fileName() != QLatin1String("replaced"))
                for (const QString& name : QDir(run.filePath()).entryList({QLatin1String(pattern)}))
                    files << run.filePath() + QLatin1Char('/') + name;
        return files;
    }
    QStringList replacedNames() const {
        QStringList names;
        for (const ReplacedSession& session : program->controller.replacedSessions())
            names << session.origin.name();
        return names;
    }
    static QList<TimedEvent> moves(int from, int to) {
        QList<TimedEvent> list;
        for (int i = from; i < to; ++i)
            list.append({i, ChannelKind::input(1), PassEventValue::fader(i % 128)});
        return list;
    }
    AutomationPass take(int events) const {
        AutomationPass pass{.id = QUuid(QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}")),
                            .createdAt = second(5)};
        for (int i = 0; i < events; ++i)
            pass.events.append({events - i, ChannelKind::input(1), PassEventValue::fader(i)});
        return pass;
    }
};

} // namespace tessik::test
