#pragma once

#include <QString>

namespace tessik {

/// What `--check FILE` prints and how it ends.
struct SessionCheckResult {
    QString text;
    int exitCode; ///< 0 clean, 1 where anything fell back to its default, 2 where the file cannot be opened
};

/// Says in words what a session file holds, what fell back and why. Changes nothing.
SessionCheckResult checkSession(const QString& path);

} // namespace tessik
