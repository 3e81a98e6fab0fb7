#pragma once

#include "TessikAutomation/Views/Desk/StripSubject.h"

namespace tessik {

/// The upper half of an input's module: its controls without MIDI and the EQ switch, in the order of the console.
const ControlTable<StripSubject>& inputModuleTable();
/// Its height, in units of the panel.
int inputModuleHeight();

/// The face of the module without controls, for where the window is wider than the console.
const PanelKind& blankModuleKind();

} // namespace tessik
