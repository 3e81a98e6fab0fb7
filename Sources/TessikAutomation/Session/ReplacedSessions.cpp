#include "TessikAutomation/Session/ReplacedSessions.h"

#include "TessikAutomation/Persistence/WallClock.h"

#include <QDir>

#include <algorithm>
#include <filesystem>
#include <tuple>

namespace tessik {
namespace {

bool isOld(const ReplacedSession& session, const QDateTime& now) {
    return session.replacedAt.addDays(ReplacedSessions::keptDays) <= now;
}

} // namespace

QString ReplacedSessions::keep(const SessionDocument& document, const std::optional<PendingTake>& take,
                               const RecoveryOrigin& origin, const QDateTime& now) const {
    if (!QDir().mkpath(_folder)) return QStringLiteral("The folder “%1” cannot be made.").arg(_folder);
    const RecoveryFile file{.folder = {},
                            .path = QStringLiteral("%1/%2-%3.tessik")
                                        .arg(_folder, QString::number(now.toSecsSinceEpoch()),
                                             QUuid::createUuid().toString(QUuid::WithoutBraces))};
    const QString error = file.write(document, take, origin);
    if (!error.isEmpty()) file.remove();
    return error;
}

/// Newest first; within a second, by when the files were written. Qt would turn those times into local time, and
/// ThreadSanitizer cannot see the lock that the C library holds round its time zone.
std::vector<ReplacedSession> ReplacedSessions::all() const {
    using Written = std::filesystem::file_time_type;
    std::vector<std::pair<Written, ReplacedSession>> found;
    for (const QFileInfo& info : QDir(_folder).entryInfoList({QStringLiteral("*.tessik")}, QDir::Files)) {
        bool isOurs = false;
        const qint64 replacedAt = info.fileName().section(QLatin1Char('-'), 0, 0).toLongLong(&isOurs);
        if (!isOurs) continue;
        std::error_code gone;
        const Written writtenAt = std::filesystem::last_write_time(info.filesystemFilePath(), gone);
        if (gone) continue;
        const RecoveryFile file{.folder = {}, .path = info.filePath()};
        found.push_back({writtenAt, {.file = file, .origin = {}, .replacedAt = dateOfSecond(replacedAt)}});
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return std::tie(a.second.replacedAt, a.first) > std::tie(b.second.replacedAt, b.first);
    });
    std::vector<ReplacedSession> sessions;
    sessions.reserve(found.size());
    for (auto& [writtenAt, session] : found)
        sessions.push_back(std::move(session));
    return sessions;
}

std::vector<ReplacedSession> ReplacedSessions::list(const QDateTime& now) const {
    std::vector<ReplacedSession> listed = all();
    std::erase_if(listed, [&now](const ReplacedSession& session) { return isOld(session, now); });
    if (listed.size() > maxListed) listed.resize(maxListed);
    for (ReplacedSession& session : listed)
        session.origin = session.file.origin();
    return listed;
}

void ReplacedSessions::removeOld(const QDateTime& now) const {
    for (const ReplacedSession& session : all())
        if (isOld(session, now)) session.file.remove();
}

} // namespace tessik
