#pragma once

#include <QCoreApplication>

namespace tessik {

/// Runs what other threads and timers have posted to the main thread so far.
inline void runPosted() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

} // namespace tessik
