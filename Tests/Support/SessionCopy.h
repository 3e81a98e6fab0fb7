#pragma once

#include "TessikAutomation/Session/SessionController.h"

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

} // namespace tessik::test
