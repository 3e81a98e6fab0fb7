#pragma once

#include <QString>

namespace tessik {

/// Writes "[" + `who` + "] " + `message` and a newline to standard error as UTF-8, in one piece. Any thread.
void logLine(const QString& who, const QString& message);

} // namespace tessik
