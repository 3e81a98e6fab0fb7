#pragma once

#include "TessikAutomation/ManualSettings/ManualChannelSettings.h"
#include "TessikAutomation/ManualSettings/MasterSectionSettings.h"
#include "TessikAutomation/Views/Desk/RecordControl.h"

namespace tessik {

/// All controls of the console that have no MIDI, once each, in panel order. The only place that knows their names,
/// ranges and units.
namespace ManualControls {

const RecordControls<ManualChannelSettings>& channel();
const RecordControls<MasterSectionSettings>& masterSection();
const RecordControls<EffectsReturnSettings>& effectsReturn();

} // namespace ManualControls
} // namespace tessik
