#pragma once

#include "TessikAutomation/Session/SessionDocument.h"

#include <QIODevice>

namespace tessik {

/// Streams a session to `device` as JSON, one record a line. Every write is checked. Returns why it failed, empty on
/// success; a number that JSON cannot represent is a failure too.
QString writeSession(const SessionDocument& document, QIODevice& device);

} // namespace tessik
