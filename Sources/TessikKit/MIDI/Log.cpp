#include "TessikKit/MIDI/Log.h"

#include <cstdio>

namespace tessik {

void logLine(const QString& who, const QString& message) {
    const QByteArray line = QStringLiteral("[%1] %2\n").arg(who, message).toUtf8();
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
}

} // namespace tessik
