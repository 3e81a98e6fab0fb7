#include "TessikAutomation/MIDI/DeskEditor.h"

#include <algorithm>
#include <cmath>

namespace tessik {

void DeskEditor::setFader(ChannelState& channel, double value) {
    const int rounded = int(std::lround(std::clamp(value, 0.0, 127.0)));
    _consoleModel.apply(MIDIChannelMapping::faderCC(channel.kind), rounded, ChangeOrigin::screen);
    _output.sendFader(channel.kind, rounded, MIDIOutputManager::Urgency::playback);
}

void DeskEditor::setSwitch(ChannelState& channel, Switch which, bool on) {
    (channel.*which).setValue(on);
    _consoleModel.apply(MIDIChannelMapping::switchCC(channel.kind),
                        MIDIChannelMapping::encodeSwitchByte(channel.switches()), ChangeOrigin::screen);
    _output.sendSwitches(channel.kind, channel.switches(), MIDIOutputManager::Urgency::playback);
}

} // namespace tessik
