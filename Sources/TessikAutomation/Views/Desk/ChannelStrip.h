#pragma once

#include "TessikAutomation/Views/Desk/StripSubject.h"

namespace tessik {

/// A channel's strip from its BYPASS down: the aluminium bar with number and scribble strip, the MIDI-carried mutes and
/// the long fader with what belongs to it, locked to the lower edge. One table each for inputs, groups and stereo.
const ControlTable<StripSubject>& channelStripTable(ChannelKind::Case kind);

/// The face of the strips without controls, for where the window is wider than the console.
const PanelKind& blankStripKind();

} // namespace tessik
