#pragma once

#include "TessikAutomation/MIDI/DeskEditor.h"
#include "TessikAutomation/Views/Controls/ControlTable.h"

namespace tessik {

/// What one channel strip shows and operates.
struct ChannelStripSubject {
    ChannelState* channel;
    DeskEditor* editor;
};

/// The channel as it is spoken of: "Channel 5", "Group 3", "Stereo".
QString spokenName(ChannelKind kind);

/// The part of a channel's module that the console automates: the aluminium bar, the MIDI-carried switches and the long
/// fader with what belongs to it, locked to the lower edge. One table each for inputs, groups and stereo.
const ControlTable<ChannelStripSubject>& channelStripTable(ChannelKind::Case kind);

/// The face of the strips without controls, for where the window is wider than the console.
const PanelKind& blankStripKind();

} // namespace tessik
