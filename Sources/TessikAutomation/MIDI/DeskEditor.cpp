#include "TessikAutomation/MIDI/DeskEditor.h"

#include <algorithm>
#include <cmath>

namespace tessik {

void DeskEditor::setFader(ChannelState& channel, double value) {
    channel.faderValue = int(std::lround(std::clamp(value, 0.0, 127.0)));
    _output.sendFader(channel.kind, channel.faderValue, MIDIOutputManager::Urgency::playback);
}

void DeskEditor::setSwitch(ChannelState& channel, Switch which, bool on) {
    (channel.*which).setValue(on);
    _output.sendSwitches(channel.kind, channel.switches(), MIDIOutputManager::Urgency::playback);
}

} // namespace tessik
