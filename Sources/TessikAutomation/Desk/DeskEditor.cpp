#include "TessikAutomation/Desk/DeskEditor.h"

#include <algorithm>
#include <cmath>

namespace tessik {

void DeskEditor::setFader(ChannelState& channel, double value) {
    const int rounded = int(std::lround(std::clamp(value, 0.0, 127.0)));
    _consoleModel.edited(MIDIChannelMapping::faderCC(channel.kind), rounded);
    _output.sendFader(channel.kind, rounded, MIDIOutputManager::Urgency::playback);
}

void DeskEditor::setSwitch(ChannelState& channel, ChannelState::Switch which, bool on) {
    const ChannelSwitches switches = channel.switchesWith(which, on);
    _consoleModel.edited(MIDIChannelMapping::switchCC(channel.kind), MIDIChannelMapping::encodeSwitchByte(switches));
    _output.sendSwitches(channel.kind, switches, MIDIOutputManager::Urgency::playback);
}

} // namespace tessik
