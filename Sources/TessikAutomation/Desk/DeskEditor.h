#pragma once

#include "TessikAutomation/Desk/MIDIOutputManager.h"

namespace tessik {

/// The only way the screen changes an automatable control: the model shows it and the desk is told, so that neither
/// runs ahead of the other.
class DeskEditor {
public:
    DeskEditor(ConsoleModel& consoleModel, MIDIOutputManager& output) : _consoleModel(consoleModel), _output(output) {}

    /// `value` is rounded and clamped to 0 to 127. Not sent if the desk is believed to hold it already.
    void setFader(ChannelState& channel, double value);

    void setSwitch(ChannelState& channel, ChannelState::Switch which, bool on);

private:
    ConsoleModel& _consoleModel;
    MIDIOutputManager& _output;
};

} // namespace tessik
