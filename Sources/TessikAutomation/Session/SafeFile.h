#pragma once

#include "TessikAutomation/Session/FileStamp.h"

#include <functional>

class QIODevice;

namespace tessik {

struct SafeFileResult {
    QString error;   ///< why it failed, as a sentence; empty on success
    FileStamp stamp; ///< of the file written
};

enum class PreviousFile : std::uint8_t { drop, keep };

/// Why the file at `path` cannot be written, as a sentence.
QString writeError(const QString& path, const QString& why);

/// Replaces the file at `path` by what `write` produces (it returns why it failed, or nothing): written beside it,
/// flushed to the disk, then renamed over it, so that whatever goes wrong, the old file or the new one is there,
/// whole. The replaced one is kept, if asked for, under its name with "~" appended. Blocks on the disk.
SafeFileResult writeFileSafely(const QString& path, PreviousFile previous,
                               const std::function<QString(QIODevice&)>& write);

} // namespace tessik
