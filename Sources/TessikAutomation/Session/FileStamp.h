#pragma once

#include <QString>

#include <cstdint>
#include <optional>

struct stat;

namespace tessik {

/// Identifies a file as it was read or written: another writer changes at least one of these.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970

    static FileStamp of(const struct stat& status);
    /// None if there is no such file.
    static std::optional<FileStamp> of(const QString& path);

    /// One line of text, and back from it.
    QString toString() const;
    static std::optional<FileStamp> fromString(const QString& text);

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

} // namespace tessik
