#pragma once

#include "TessikKit/Models/ConsoleModel.h"

namespace tessik {

/// Puts a channel's state on screen, as selecting a pass does.
inline void showFader(ConsoleModel& model, ChannelKind kind, int value) {
    model.shown(MIDIChannelMapping::faderCC(kind), value);
}
inline void showSwitches(ConsoleModel& model, ChannelKind kind, ChannelSwitches switches) {
    model.shown(MIDIChannelMapping::switchCC(kind), MIDIChannelMapping::encodeSwitchByte(switches));
}

} // namespace tessik
