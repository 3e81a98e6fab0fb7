#pragma once

#include "TessikAutomation/Views/Desk/StripSubject.h"

namespace tessik {

/// A channel's strip from BYPASS down: the aluminium bar with number and scribble strip, the MIDI-controlled mutes, and
/// the long fader with its displays, anchored to the lower edge. One table each for inputs, groups and stereo.
const ControlTable<StripSubject>& channelStripTable(ChannelKind::Case kind);

/// The face of the strips without controls, for windows wider than the console.
const PanelKind& blankStripKind();

} // namespace tessik
