#pragma once

#include "TessikAutomation/Session/SafeFile.h"
#include "TessikAutomation/Session/SessionDocument.h"

namespace tessik {

/// Writes a session file safely. Blocks on the disk; callable on any thread.
SafeFileResult writeSessionFile(const QString& path, PreviousFile previous, const SessionDocument& document);

} // namespace tessik
