#pragma once

#include "TessikAutomation/Automation/PassStore.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/ManualSettings/MasterSectionStore.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/BackgroundWriter.h"
#include "TessikAutomation/Session/LocatorStore.h"
#include "TessikAutomation/Session/RecoveryFolder.h"
#include "TessikAutomation/Session/SafeFile.h"
#include "TessikAutomation/Session/SessionDialogs.h"
#include "TessikAutomation/Snapshots/SnapshotStore.h"

#include <QTimer>
#include <QUrl>

namespace tessik {

/// The stores that make up a session. They belong to the application and live longer than the controller.
struct SessionStores {
    SnapshotStore& snapshots;
    PassStore& passes;
    ManualSettingsStore& manualSettings;
    ChannelLabelStore& channelLabels;
    MasterSectionStore& masterSection;
    LocatorStore& locators;
};

/// The current session: which file it came from, whether it has changed since, and the flows that save and replace it.
/// Its content lives in the stores.
///
/// Saving and recovery write copies on a thread of their own, in order. Main thread only.
class SessionController {
public:
    /// Takes the stores' `onChange`, and begins with a new session.
    SessionController(const SessionStores& stores, SessionDialogs& dialogs, QString recoveryRoot,
                      WallClock clock = currentSecond);
    /// Ends saves under way. Recovery files of unsaved sessions stay.
    ~SessionController();

    QProperty<std::optional<QUrl>> fileURL{std::nullopt}; ///< none for a session that was never saved
    QProperty<bool> hasUnsavedChanges{false};
    QProperty<bool> isSaving{false};
    /// "Untitled", or the file's name without its extension.
    QString displayName() const;

    /// New and Open replace the session without a question. What they replace unsaved can be had back.
    void newSession();
    void open();
    void open(const QUrl& url);
    void save();
    void saveAs();
    /// Waits for the disk, and tells the user of failures as if time had gone by.
    void finishSaving() { _writer.finish(); }

    QProperty<bool> hasReplacedSession{false};
    /// Puts back the session that New or Open replaced unsaved last.
    void reopenReplacedSession();

    /// Asks where something would be lost. True: the program may end, and its recovery files are gone.
    bool prepareToQuit();

    /// Called after a document was moved into the stores, before the session counts as clean.
    std::function<void()> onSessionLoaded;

    /// The take that is in no store yet, for recovery.
    std::function<std::optional<PendingTake>()> pendingTake;
    /// Puts that take into the pass store under that name: when the user saves it on quitting.
    std::function<void(const QString& name)> storePendingTake;

    /// Offers what crashed copies left, newest first, until the user takes one. For the start of the program.
    void offerRecovery();
    static constexpr std::chrono::seconds recoveryInterval{10};
    /// Writes the recovery file where anything has changed since, and removes one that is no longer needed. The
    /// controller's own timer calls it.
    void recoveryTick();
    /// Writes a take that has just ended at once.
    void takeEnded();
    /// Why recovery files cannot be written; empty while they can.
    QProperty<QString> recoveryProblem;

private:
    struct ReplacedSession {
        SessionDocument document;
        std::optional<QUrl> url;
        std::optional<FileStamp> stamp;
        RecoveryFile recovery;
    };
    struct RecoveryState {
        std::int64_t changes;
        QUuid take;
        qsizetype takeEvents;
        std::int64_t ridesEnd; // a ride goes on without events, and its end may add as many as it drops
        RecoveryOrigin origin;
        friend bool operator==(const RecoveryState&, const RecoveryState&) = default;
    };

    void noteChange();
    SessionDocument document() const;
    void apply(const SessionDocument& document);
    void replace(const ReplacedSession& next);
    void fail(const QString& title, const QString& why);

    void saveTo(const QString& path);
    void finishSave(const QString& path, std::int64_t changes, const SafeFileResult& result);

    RecoveryFile newRecoveryFile();
    RecoveryOrigin origin() const;
    void writeRecovery(const std::optional<PendingTake>& take);
    void removeRecovery(const RecoveryFile& file);

    const SessionStores _stores;
    SessionDialogs& _dialogs;
    const QString _recoveryRoot;
    const WallClock _clock;

    QDateTime _createdAt;
    std::optional<FileStamp> _stamp;  // of the session's file when it was opened or saved last
    std::int64_t _changes = 0;        // counts every change, so that one made during a save is seen
    std::optional<QString> _nextSave; // asked for while one was under way

    std::shared_ptr<RecoveryFolder> _recoveryFolder;
    int _recoveryFiles = 0;
    RecoveryFile _recovery;                  // of the current session
    std::optional<RecoveryState> _recovered; // what that file holds, or will
    int _recoveryWrites = 0;                 // under way
    std::vector<ReplacedSession> _replaced;

    QTimer _recoveryTimer;
    BackgroundWriter _writer; // last: its jobs end first
};

} // namespace tessik
