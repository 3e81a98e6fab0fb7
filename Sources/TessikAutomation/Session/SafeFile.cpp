#include "TessikAutomation/Session/SafeFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessik {
namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// Gives the file its second name "…~": a hard link where the file system supports it, else a copy.
QString keepPrevious(const QString& target) {
    const QString kept = target + QLatin1Char('~');
    const QString fresh = kept + QStringLiteral(".new");
    QFile::remove(fresh);
    if (link(QFile::encodeName(target).constData(), QFile::encodeName(fresh).constData()) != 0 &&
        !QFile::copy(target, fresh)) {
        QFile::remove(fresh);
        if (!QFile::exists(target)) return {}; // somebody removed it in the meantime
        return QStringLiteral("The previous file cannot be kept as %1.").arg(kept);
    }
    if (std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(kept).constData()) != 0) {
        const QString error = systemError();
        QFile::remove(fresh);
        return QStringLiteral("The previous file cannot be kept as %1: %2.").arg(kept, error);
    }
    QFile::remove(fresh); // if both were the same file already, renaming left it
    return {};
}

/// A rename is on the disk only once its folder is. File systems that cannot flush one say EINVAL.
QString flushFolder(const QString& folder) {
    const int opened = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0) return systemError();
    const QString error = fsync(opened) != 0 && errno != EINVAL && errno != ENOTSUP ? systemError() : QString();
    close(opened);
    return error;
}

} // namespace

QString writeError(const QString& path, const QString& why) {
    const QString end = why.endsWith(QLatin1Char('.')) ? QString() : QStringLiteral(".");
    return QStringLiteral("“%1” cannot be written: %2%3").arg(path, why, end);
}

SafeFileResult writeFileSafely(const QString& path, PreviousFile previous,
                               const std::function<QString(QIODevice&)>& write) {
    const QFileInfo asked(path);
    const QString target = asked.exists() ? asked.canonicalFilePath() : asked.absoluteFilePath(); // resolves links
    const QFileInfo existing(target);
    const auto failed = [&path](const QString& why) {
        return SafeFileResult{.error = writeError(path, why), .stamp = {}};
    };
    struct stat status {};
    const bool isThere = stat(QFile::encodeName(target).constData(), &status) == 0;
    if (isThere && !S_ISREG(status.st_mode)) return failed(QStringLiteral("it is not a regular file."));

    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return failed(file.errorString());
    QString error = write(file);
    if (error.isEmpty() && !file.flush()) error = file.errorString();
    if (error.isEmpty() && fsync(file.handle()) != 0) error = systemError();
    if (error.isEmpty() && isThere && previous == PreviousFile::keep) error = keepPrevious(target);
    if (!error.isEmpty()) {
        file.cancelWriting();
        return failed(error);
    }
    struct stat written {};
    const bool stamped = fstat(file.handle(), &written) == 0;
    if (!file.commit()) return failed(file.errorString());
    error = flushFolder(existing.absolutePath());
    if (!error.isEmpty()) return failed(error);
    return {.error = {}, .stamp = stamped ? FileStamp::of(written) : FileStamp()};
}

} // namespace tessik
