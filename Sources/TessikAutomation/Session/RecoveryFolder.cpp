#include "TessikAutomation/Session/RecoveryFolder.h"

#include "TessikAutomation/Session/SessionFile.h"
#include "TessikAutomation/Session/TakeJournal.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessik {
namespace {

const QLatin1String lockName("lock");
const QLatin1String sessionSuffix(".tessik");
const QLatin1String originSuffix(".origin");
const QLatin1String journalSuffix(".take"); // after the session's name, "-" and the take's id

/// The lock of a folder; -1 if someone else holds it, or it is gone.
int lockFolder(const QString& folder, int flags) {
    const int opened =
        open(QFile::encodeName(folder + QLatin1Char('/') + lockName).constData(), O_RDWR | O_CLOEXEC | flags, 0600);
    if (opened < 0) return -1;
    struct stat status {};
    // With no link left, somebody cleared the folder away before we got the lock.
    if (flock(opened, LOCK_EX | LOCK_NB) == 0 && fstat(opened, &status) == 0 && status.st_nlink > 0) return opened;
    close(opened);
    return -1;
}

/// The path of a session's copy without its suffix.
QString basePath(const QString& path) { return path.left(path.size() - sessionSuffix.size()); }
QString originPath(const QString& path) { return basePath(path) + originSuffix; }

QStringList filesIn(const QString& folder, const QString& pattern) {
    QStringList paths;
    for (const QFileInfo& file : QDir(folder).entryInfoList({pattern}, QDir::Files))
        paths << file.filePath();
    return paths;
}

/// Every session in a folder that has a copy or a journal.
QStringList sessionsIn(const QString& folder) {
    QStringList paths = filesIn(folder, QLatin1Char('*') + sessionSuffix);
    for (const QString& journal : filesIn(folder, QLatin1Char('*') + journalSuffix)) {
        const QString path = journal.left(journal.indexOf(QLatin1Char('-'), folder.size() + 1)) + sessionSuffix;
        if (!paths.contains(path)) paths << path;
    }
    return paths;
}

/// Puts a take before the other passes, replacing an older state of it.
void putTake(SessionDocument& document, const PendingTake& take) {
    AutomationPass pass = take.finished();
    if (pass.name.isEmpty()) pass.name = QStringLiteral("Recovered take");
    document.passes.removeIf([&pass](const AutomationPass& other) { return other.id == pass.id; });
    document.passes.prepend(pass);
}

} // namespace

QString RecoveryFolder::defaultRoot() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(state)) state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/tessik-automation/recovery");
}

std::shared_ptr<RecoveryFolder> RecoveryFolder::create(const QString& root) {
    const QString folder = root + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::WithoutBraces);
    const int lock = QDir().mkpath(folder) ? lockFolder(folder, O_CREAT) : -1;
    if (lock < 0) return nullptr;
    return std::shared_ptr<RecoveryFolder>(new RecoveryFolder(folder, lock));
}

bool RecoveryFolder::isThere() const {
    struct stat held {
    }, named{};
    return fstat(_lock, &held) == 0 &&
           stat(QFile::encodeName(path + QLatin1Char('/') + lockName).constData(), &named) == 0 &&
           held.st_ino == named.st_ino && held.st_dev == named.st_dev;
}

std::shared_ptr<RecoveryFolder> RecoveryFolder::take(const QString& path) {
    const int lock = lockFolder(path, 0);
    return lock < 0 ? nullptr : std::shared_ptr<RecoveryFolder>(new RecoveryFolder(path, lock));
}

RecoveryFolder::~RecoveryFolder() {
    if (sessionsIn(path).isEmpty()) QDir(path).removeRecursively();
    close(_lock);
}

QString RecoveryOrigin::name() const {
    if (sessionPath.isEmpty()) return QStringLiteral("Untitled");
    const QFileInfo file(sessionPath);
    return file.completeBaseName().isEmpty() ? file.fileName() : file.completeBaseName();
}

std::optional<QUrl> RecoveryOrigin::url() const {
    return sessionPath.isEmpty() ? std::nullopt : std::optional(QUrl::fromLocalFile(sessionPath));
}

QString RecoveryFile::write(SessionDocument document, const std::optional<PendingTake>& take,
                            const RecoveryOrigin& origin) const {
    if (take) putTake(document, *take);
    const QByteArray text =
        (origin.sessionPath + QLatin1Char('\n') + (origin.stamp ? origin.stamp->toString() : QString())).toUtf8();
    const SafeFileResult noted = writeFileSafely(originPath(path), PreviousFile::drop, [&text](QIODevice& device) {
        return device.write(text) == text.size() ? QString() : device.errorString();
    });
    return noted.error.isEmpty() ? writeSessionFile(path, PreviousFile::drop, document).error : noted.error;
}

RecoveryOrigin RecoveryFile::origin() const {
    QFile file(originPath(path));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QString text = QString::fromUtf8(file.readAll());
    const qsizetype split = text.lastIndexOf(QLatin1Char('\n')); // a path may itself contain line breaks
    if (split < 0) return {};
    return {.sessionPath = text.left(split), .stamp = FileStamp::fromString(text.mid(split + 1))};
}

SessionReadResult RecoveryFile::read(const QDateTime& now) const {
    const bool isCopied = QFile::exists(path) || journals().isEmpty();
    const QString session = isCopied ? path : origin().sessionPath;
    SessionReadResult result;
    if (session.isEmpty())
        result.document = SessionDocument::empty(now);
    else
        result = readSession(session, now);
    if (!result.document) return result;
    for (const QString& journal : journals())
        if (const std::optional<PendingTake> take = TakeJournal::read(journal)) {
            const QList<AutomationPass>& passes = result.document->passes;
            const auto copied = std::find_if(passes.begin(), passes.end(), [&](const AutomationPass& pass) {
                return pass.id == take->pass.id && pass.events.size() >= take->finished().events.size();
            });
            if (copied == passes.end()) putTake(*result.document, *take);
        }
    return result;
}

void RecoveryFile::remove() const {
    for (const QString& each : QStringList{path, originPath(path)} + journals())
        QFile::remove(each);
}

QString RecoveryFile::journalPath(const QUuid& take) const {
    return basePath(path) + QLatin1Char('-') + take.toString(QUuid::WithoutBraces) + journalSuffix;
}

QStringList RecoveryFile::journals() const {
    return filesIn(QFileInfo(path).path(), QFileInfo(basePath(path)).fileName() + QStringLiteral("-*") + journalSuffix);
}

std::vector<RecoveryOffer> findRecoveries(const QString& root) {
    std::vector<RecoveryOffer> offers;
    for (const QFileInfo& entry : QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const std::shared_ptr<RecoveryFolder> folder = RecoveryFolder::take(entry.filePath());
        if (!folder) continue;
        for (const QString& path : sessionsIn(folder->path)) {
            const RecoveryFile file{.folder = folder, .path = path};
            QDateTime writtenAt;
            for (const QString& part : file.journals() + QStringList(path))
                writtenAt = std::max(writtenAt, QFileInfo(part).lastModified());
            offers.push_back({.file = file, .origin = file.origin(), .writtenAt = writtenAt});
        }
    }
    std::stable_sort(offers.begin(), offers.end(),
                     [](const RecoveryOffer& a, const RecoveryOffer& b) { return a.writtenAt > b.writtenAt; });
    return offers;
}

} // namespace tessik
