#pragma once

#include "TessikAutomation/Views/Desk/StripSubject.h"

namespace tessik {

/// The upper half of an input's module: its controls without MIDI and the EQ switch, in the console's order.
const ControlTable<StripSubject>& inputModuleTable();
/// Its height, in panel units.
int inputModuleHeight();

/// The face of the module without controls, for windows wider than the console.
const PanelKind& blankModuleKind();

} // namespace tessik
