#pragma once

#include "TessikAutomation/Session/SessionDocument.h"

#include <QIODevice>

namespace tessik {

/// Streams a session to `device` as JSON, one record a line. Every write is checked. Returns why it failed, empty where
/// it did not; a number that JSON has no form for is a failure too.
QString writeSession(const SessionDocument& document, QIODevice& device);

} // namespace tessik
