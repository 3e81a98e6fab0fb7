#include "TessikAutomation/Session/SessionFile.h"

#include "TessikAutomation/Session/SessionWriter.h"

namespace tessik {

SafeFileResult writeSessionFile(const QString& path, PreviousFile previous, const SessionDocument& document) {
    return writeFileSafely(path, previous, [&](QIODevice& device) { return writeSession(document, device); });
}

} // namespace tessik
