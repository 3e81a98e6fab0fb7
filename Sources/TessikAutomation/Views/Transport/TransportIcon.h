#pragma once

#include "TessikAutomation/Views/Controls/PanelButton.h"

namespace tessik {

/// The symbol of that name among the transport's icons, for a button. Its shape comes from a drawing, its colour from
/// whoever draws it.
PanelButton::Symbol transportIcon(const QString& name);

} // namespace tessik
