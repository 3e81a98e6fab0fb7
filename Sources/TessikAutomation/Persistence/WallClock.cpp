#include "TessikAutomation/Persistence/WallClock.h"

#include <QLocale>

namespace tessik {

QDateTime currentSecond() { return dateOfSecond(QDateTime::currentSecsSinceEpoch()); }

QDateTime dateOfSecond(qint64 secondsSinceEpoch) {
    // Of the ways to name UTC, some releases of Qt deprecate one and some lack the other.
    static const QDateTime epoch = QDateTime::fromSecsSinceEpoch(0).toUTC();
    return epoch.addSecs(secondsSinceEpoch);
}

QString proposedName(const QDateTime& when) {
    return QLocale::c().toString(when.toLocalTime(), QStringLiteral("MMM d, h:mm AP"));
}

} // namespace tessik
