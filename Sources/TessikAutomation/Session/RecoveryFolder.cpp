#include "TessikAutomation/Session/RecoveryFolder.h"

#include "TessikAutomation/Session/SessionFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

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

/// The lock of a folder; -1 where it is another's, or gone.
int lockFolder(const QString& folder, int flags) {
    const int opened =
        open(QFile::encodeName(folder + QLatin1Char('/') + lockName).constData(), O_RDWR | O_CLOEXEC | flags, 0600);
    if (opened < 0) return -1;
    struct stat status {};
    // Without a link left, somebody cleared the folder away before the lock was ours.
    if (flock(opened, LOCK_EX | LOCK_NB) == 0 && fstat(opened, &status) == 0 && status.st_nlink > 0) return opened;
    close(opened);
    return -1;
}

QString originPath(const QString& sessionPath) {
    return sessionPath.left(sessionPath.size() - sessionSuffix.size()) + originSuffix;
}

} // namespace

QString RecoveryFolder::defaultRoot() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(state)) state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/TessikAutomation/Recovery");
}

std::shared_ptr<RecoveryFolder> RecoveryFolder::create(const QString& root) {
    const QString folder = root + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::WithoutBraces);
    const int lock = QDir().mkpath(folder) ? lockFolder(folder, O_CREAT) : -1;
    if (lock < 0) return nullptr;
    return std::shared_ptr<RecoveryFolder>(new RecoveryFolder(folder, lock));
}

std::shared_ptr<RecoveryFolder> RecoveryFolder::take(const QString& path) {
    const int lock = lockFolder(path, 0);
    return lock < 0 ? nullptr : std::shared_ptr<RecoveryFolder>(new RecoveryFolder(path, lock));
}

RecoveryFolder::~RecoveryFolder() {
    const QDir folder(path);
    if (folder.entryList({QLatin1Char('*') + sessionSuffix}, QDir::Files).isEmpty()) QDir(path).removeRecursively();
    close(_lock);
}

QString RecoveryFile::write(SessionDocument document, const std::optional<PendingTake>& take,
                            const RecoveryOrigin& origin) const {
    if (!folder) return QStringLiteral("The folder for recovery files cannot be made.");
    if (take) {
        AutomationPass pass = take->finished();
        if (pass.name.isEmpty()) pass.name = QStringLiteral("Recovered take");
        document.passes.removeIf([&pass](const AutomationPass& other) { return other.id == pass.id; });
        document.passes.prepend(pass);
    }
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
    const qsizetype split = text.lastIndexOf(QLatin1Char('\n')); // a path may hold line ends itself
    if (split < 0) return {};
    return {.sessionPath = text.left(split), .stamp = FileStamp::fromString(text.mid(split + 1))};
}

void RecoveryFile::remove() const {
    QFile::remove(path);
    QFile::remove(originPath(path));
}

std::vector<RecoveryOffer> findRecoveries(const QString& root) {
    std::vector<RecoveryOffer> offers;
    for (const QFileInfo& entry : QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const std::shared_ptr<RecoveryFolder> folder = RecoveryFolder::take(entry.filePath());
        if (!folder) continue;
        for (const QFileInfo& left :
             QDir(folder->path).entryInfoList({QLatin1Char('*') + sessionSuffix}, QDir::Files)) {
            const RecoveryFile file{.folder = folder, .path = left.filePath()};
            offers.push_back({.file = file, .origin = file.origin(), .writtenAt = left.lastModified()});
        }
    }
    std::stable_sort(offers.begin(), offers.end(),
                     [](const RecoveryOffer& a, const RecoveryOffer& b) { return a.writtenAt > b.writtenAt; });
    return offers;
}

} // namespace tessik
