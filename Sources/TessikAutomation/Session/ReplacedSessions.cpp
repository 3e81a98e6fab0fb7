#include "TessikAutomation/Session/ReplacedSessions.h"

#include "TessikAutomation/Persistence/WallClock.h"

#include <QDir>

#include <algorithm>

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

/// Newest first.
std::vector<ReplacedSession> ReplacedSessions::all() const {
    std::vector<ReplacedSession> found;
    const QDir folder(_folder);
    for (const QFileInfo& info : folder.entryInfoList({QStringLiteral("*.tessik")}, QDir::Files, QDir::Time)) {
        bool isOurs = false;
        const qint64 replacedAt = info.fileName().section(QLatin1Char('-'), 0, 0).toLongLong(&isOurs);
        if (isOurs)
            found.push_back({.file = {.folder = {}, .path = info.filePath()},
                             .origin = {},
                             .replacedAt = dateOfSecond(replacedAt)});
    }
    std::stable_sort(found.begin(), found.end(), [](const ReplacedSession& a, const ReplacedSession& b) {
        return a.replacedAt > b.replacedAt; // within a second, by when the files were written
    });
    return found;
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
