#pragma once

#include "TessikAutomation/Automation/PassStore.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/ManualSettings/MasterSectionStore.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/BackgroundWriter.h"
#include "TessikAutomation/Session/LocatorStore.h"
#include "TessikAutomation/Session/ReplacedSessions.h"
#include "TessikAutomation/Session/SafeFile.h"
#include "TessikAutomation/Session/SessionDialogs.h"
#include "TessikAutomation/Session/TakeJournal.h"
#include "TessikAutomation/Snapshots/SnapshotStore.h"
#include "TessikKit/Models/Published.h"

#include <QTimer>
#include <QUrl>

namespace tessik {

/// The stores that make up a session. They belong to the application and outlive the controller.
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
/// Saving and recovery write copies on their own thread, in order, and a take's journal on another. Main thread only.
class SessionController {
public:
    /// Takes over the stores' `onChange`, and begins with a new session.
    SessionController(const SessionStores& stores, SessionDialogs& dialogs, QString recoveryRoot,
                      WallClock clock = currentSecond);
    /// Finishes saves under way. Recovery files of unsaved sessions stay.
    ~SessionController();

    Published<std::optional<QUrl>, SessionController> fileURL{std::nullopt}; ///< none if the session was never saved
    Published<bool, SessionController> hasUnsavedChanges{false};
    Published<bool, SessionController> isSaving{false};
    /// "Untitled", or the file's name without its extension.
    QString displayName() const;

    /// New and Open replace the session without asking. Unsaved work that they replace is kept first, with a take that
    /// is in no store yet; the user is asked only if that fails.
    void newSession();
    void open();
    void open(const QUrl& url);
    void save();
    void saveAs();
    /// Waits for the disk, and reports failures to the user as they would have been in time.
    void finishSaving();

    /// What New and Open replaced unsaved, latest first.
    std::vector<ReplacedSession> replacedSessions() const { return _replaced.list(_clock()); }
    /// Puts one of them back, as an unsaved session.
    void reopen(const ReplacedSession& session);

    /// Asks if anything would be lost. True: the program may end, and its recovery files are gone.
    bool prepareToQuit();

    /// Called after a document has been moved into the stores, before the session counts as clean.
    std::function<void()> onSessionLoaded;

    /// Writes the recovery file at once and waits for it, if there is unsaved work that the user has not given up.
    void keepUnsaved();
    /// The same for a program about to end: nothing more is asked or reported.
    void leave();

    /// The take that is in no store yet.
    std::function<std::optional<PendingTake>()> pendingTake;
    /// Whether that take is still growing.
    std::function<bool()> isRecordingTake;
    /// Puts that take into the pass store under that name: when the user saves it on quitting, or moves to another
    /// session.
    std::function<void(const QString& name)> storePendingTake;
    /// Call when a take begins, ends or goes away: a growing one is journaled, one that has ended is written at once.
    void noteTake();

    /// Offers what crashed copies left, newest first, until the user takes one. For startup.
    void offerRecovery();
    static constexpr std::chrono::seconds recoveryInterval{10};
    /// Writes the recovery file if anything has changed since, and removes one that is no longer needed. The
    /// controller's own timer calls it.
    void recoveryTick();
    static constexpr std::chrono::milliseconds journalInterval{500};
    /// Appends what the take has grown by to the journal. A timer calls it during recording.
    void journalTick();
    /// Why recovery files cannot be written; empty if they can.
    Published<QString, SessionController> recoveryProblem;
    /// What the session's file held that could not be read, and so is not in the session; empty if nothing was left
    /// out.
    Published<QString, SessionController> leftOut;

private:
    struct NextSession {
        SessionDocument document;
        std::optional<QUrl> url;
        std::optional<FileStamp> stamp;
        QString leftOut;
        RecoveryFile recovery;
    };
    struct RecoveryState {
        std::int64_t changes;
        QUuid take;
        qsizetype takeEvents; // -1 for one in its journal
        RecoveryOrigin origin;
        friend bool operator==(const RecoveryState&, const RecoveryState&) = default;
    };
    struct Journal {
        QUuid take;
        std::shared_ptr<TakeJournal> file;
    };

    void noteChange();
    SessionDocument document() const;
    void apply(const SessionDocument& document);
    bool replace(const NextSession& next);
    bool keepReplaced(const std::optional<PendingTake>& take);
    void fail(const QString& title, const QString& why);

    void saveTo(const QString& path);
    void finishSave(const QString& path, std::int64_t changes, const SafeFileResult& result);

    bool makeRecoveryFile();
    RecoveryOrigin origin() const;
    std::optional<PendingTake> unsavedTake() const;
    bool isTakeGrowing() const { return isRecordingTake && isRecordingTake(); }
    void writeRecovery(const std::optional<PendingTake>& take);
    void replaceRecoveryFolder();
    void dropRecovery();
    void removeRecovery(const RecoveryFile& file);
    void noteProblem(QString& of, const QString& problem);
    void endJournal();
    void flushJournal(const std::function<void()>& flush);

    const SessionStores _stores;
    SessionDialogs& _dialogs;
    const QString _recoveryRoot;
    const WallClock _clock;

    QDateTime _createdAt;
    std::optional<FileStamp> _stamp;  // of the session's file when last opened or saved
    std::int64_t _changes = 0;        // counts every change, so that one made during a save is noticed
    std::optional<QString> _nextSave; // asked for while one was under way

    std::shared_ptr<RecoveryFolder> _recoveryFolder;
    int _recoveryFiles = 0;
    RecoveryFile _recovery;                  // of the current session
    std::optional<RecoveryState> _recovered; // what that file holds, or will
    int _recoveryWrites = 0;                 // under way
    std::optional<Journal> _journal;         // of the take being recorded
    bool _isJournalBusy = false;
    std::vector<std::function<void()>> _superseded; // removes what the next recovery file makes unnecessary
    QString _copyProblem, _journalProblem;
    const ReplacedSessions _replaced;
    bool _mayEnd = false; // the user has agreed, and nothing has changed since
    bool _isLeaving = false;

    QTimer _recoveryTimer;
    QTimer _journalTimer;
    BackgroundWriter _journalWriter;
    BackgroundWriter _writer; // last: its jobs end first
};

} // namespace tessik
