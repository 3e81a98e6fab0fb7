#pragma once

#include <QDateTime>

#include <functional>

namespace tessik {

/// Gives the date and time as records hold it: UTC, in whole seconds, so that what is written reads back equal.
using WallClock = std::function<QDateTime()>;

QDateTime currentSecond();

/// A number of seconds after 1970, as records hold it.
QDateTime dateOfSecond(qint64 secondsSinceEpoch);

/// The name proposed for what is captured or recorded at that time, in the machine's time zone: "Mar 4, 9:05 PM".
QString proposedName(const QDateTime& when);

} // namespace tessik
