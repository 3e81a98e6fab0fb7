#pragma once

#include "TessikAutomation/Session/RecoveryFolder.h"

namespace tessik {

/// A session that was replaced before it was saved.
struct ReplacedSession {
    RecoveryFile file;
    RecoveryOrigin origin;
    QDateTime replacedAt; ///< UTC
};

/// The sessions that were replaced unsaved, in a folder shared by all copies of the program: they are kept for 30 days,
/// even after the program ends. Everything blocks on the disk.
class ReplacedSessions {
public:
    static constexpr qint64 keptDays = 30;
    static constexpr std::size_t maxListed = 10;

    explicit ReplacedSessions(QString folder) : _folder(std::move(folder)) {}

    /// Keeps a session with its pending take. Returns why it failed; empty on success.
    QString keep(const SessionDocument& document, const std::optional<PendingTake>& take, const RecoveryOrigin& origin,
                 const QDateTime& now) const;
    /// The latest ones, newest first.
    std::vector<ReplacedSession> list(const QDateTime& now) const;
    /// Removes those that are older.
    void removeOld(const QDateTime& now) const;

private:
    std::vector<ReplacedSession> all() const;

    const QString _folder;
};

} // namespace tessik
