#pragma once

#include <QString>

namespace tessik {

/// What `--check FILE` prints, and its exit code.
struct SessionCheckResult {
    QString text;
    int exitCode; ///< 0 clean, 1 if anything fell back to its default, 2 if the file cannot be opened
};

/// Describes what a session file holds, what fell back and why. Changes nothing.
SessionCheckResult checkSession(const QString& path);

} // namespace tessik
