#include "TessikAutomation/Persistence/WallClock.h"

#include <QLocale>
#include <QTimeZone>

namespace tessik {

QDateTime currentSecond() { return dateOfSecond(QDateTime::currentSecsSinceEpoch()); }

QDateTime dateOfSecond(qint64 secondsSinceEpoch) {
    // Of the shorter ways to name UTC, some releases of Qt deprecate one and some lack the other.
    return QDateTime::fromSecsSinceEpoch(secondsSinceEpoch, QTimeZone::utc()).toUTC();
}

QString proposedName(const QDateTime& when) {
    return QLocale::c().toString(when.toLocalTime(), QStringLiteral("MMM d, h:mm AP"));
}

} // namespace tessik
