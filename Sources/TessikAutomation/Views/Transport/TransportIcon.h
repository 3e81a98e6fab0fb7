#pragma once

#include "TessikAutomation/Views/Drawing/SVGSymbol.h"

namespace tessik {

/// The symbol of that name among the transport's icons.
Symbol transportIcon(const QString& name);

} // namespace tessik
