#include "TessikAutomation/Session/FileStamp.h"

#include <QFile>
#include <QStringList>

#include <sys/stat.h>

namespace tessik {

FileStamp FileStamp::of(const struct stat& status) {
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modified = std::int64_t(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec};
}

std::optional<FileStamp> FileStamp::of(const QString& path) {
    struct stat status {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? std::optional(of(status)) : std::nullopt;
}

QString FileStamp::toString() const {
    return QStringLiteral("%1 %2 %3 %4").arg(device).arg(inode).arg(size).arg(modified);
}

std::optional<FileStamp> FileStamp::fromString(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(' '));
    if (parts.size() != 4) return std::nullopt;
    return FileStamp{.device = parts[0].toULongLong(),
                     .inode = parts[1].toULongLong(),
                     .size = parts[2].toLongLong(),
                     .modified = parts[3].toLongLong()};
}

} // namespace tessik
