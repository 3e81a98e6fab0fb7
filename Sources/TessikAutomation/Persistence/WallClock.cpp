#include "TessikAutomation/Persistence/WallClock.h"

#include <QLocale>

namespace tessik {

QDateTime currentSecond() { return QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC); }

QString proposedName(const QDateTime& when) {
    return QLocale::c().toString(when.toLocalTime(), QStringLiteral("MMM d, h:mm AP"));
}

} // namespace tessik
