#pragma once

#include "TessikAutomation/Automation/PendingTake.h"
#include "TessikAutomation/Session/FileStamp.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QUrl>

#include <memory>
#include <vector>

namespace tessik {

/// One running copy's folder of recovery files, locked for this object's lifetime: the kernel releases the lock of a
/// copy that crashed. A folder without recovery files and journals is removed with its lock.
class RecoveryFolder {
public:
    /// Where recovery files are kept: in the user's state folder. An empty or relative XDG_STATE_HOME does not count.
    static QString defaultRoot();
    /// A new folder below `root`, which is created if missing; null if that fails.
    static std::shared_ptr<RecoveryFolder> create(const QString& root);
    /// A folder that a copy left behind; null if a running copy holds it.
    static std::shared_ptr<RecoveryFolder> take(const QString& path);
    ~RecoveryFolder();
    RecoveryFolder(const RecoveryFolder&) = delete;
    RecoveryFolder& operator=(const RecoveryFolder&) = delete;

    /// Whether it is still at its path. Someone may have cleared it away.
    bool isThere() const;

    const QString path;

private:
    RecoveryFolder(QString folder, int lock) : path(std::move(folder)), _lock(lock) {}

    const int _lock; // open file whose lock is held
};

/// Where a recovery file's session belongs.
struct RecoveryOrigin {
    QString sessionPath;            ///< empty if it was never saved
    std::optional<FileStamp> stamp; ///< of that file when last opened or saved

    /// What the session is called.
    QString name() const;
    std::optional<QUrl> url() const;

    friend bool operator==(const RecoveryOrigin&, const RecoveryOrigin&) = default;
};

/// The copy of one session. Reads and writes block on the disk; callable on any thread.
struct RecoveryFile {
    std::shared_ptr<RecoveryFolder> folder; ///< keeps it ours; null if no lock holds it
    QString path;

    /// Writes the session with its pending take among the passes. Returns why it failed; empty on success.
    QString write(SessionDocument document, const std::optional<PendingTake>& take, const RecoveryOrigin& origin) const;
    RecoveryOrigin origin() const;
    /// The session with the takes of its journals among the passes; if a kill came before its first copy, the file that
    /// it belongs to.
    SessionReadResult read(const QDateTime& now) const;
    /// Removes it with its journals.
    void remove() const;

    /// Where a take of the session is journaled during recording.
    QString journalPath(const QUuid& take) const;
    QStringList journals() const;
};

/// What copies that are no longer running left below `root`, newest first. Not offered to anyone else meanwhile.
struct RecoveryOffer {
    RecoveryFile file;
    RecoveryOrigin origin;
    QDateTime writtenAt;
};
std::vector<RecoveryOffer> findRecoveries(const QString& root);

} // namespace tessik
