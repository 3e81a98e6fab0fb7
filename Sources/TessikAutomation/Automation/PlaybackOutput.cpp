#include "TessikAutomation/Automation/PlaybackOutput.h"

#include <utility>

namespace tessik {

ChannelState* PlaybackOutput::visibleChannel(int cc) const {
    auto kind = MIDIChannelMapping::channelKindForFaderCC(cc);
    if (!kind) kind = MIDIChannelMapping::channelKindForSwitchCC(cc);
    ChannelState* channel = kind ? _consoleModel.channelState(*kind) : nullptr;
    return channel && _consoleModel.isVisible(*channel) ? channel : nullptr;
}

std::optional<int> PlaybackOutput::noteChange(const ConsoleChange& change) {
    return std::exchange(_last[std::size_t(change.cc)], change.value);
}

void PlaybackOutput::play(int cc, int value, MIDIOutputManager::Urgency urgency) {
    if (!visibleChannel(cc)) return;
    _last[std::size_t(cc)] = value;
    _desk.send(cc, value, urgency);
    show(cc, value);
}

void PlaybackOutput::assertState(const ControllerValues& values) {
    ControllerValues shown;
    for (std::size_t cc = 0; cc < values.size(); ++cc) {
        if (!values[cc] || !visibleChannel(int(cc))) continue;
        shown[cc] = _last[cc] = values[cc];
        show(int(cc), *values[cc]);
    }
    _desk.assertState(shown);
}

void PlaybackOutput::show(int cc, int value) {
    ChannelState* channel = visibleChannel(cc);
    if (!channel) return;
    channel->lastUpdate = _clock.now();
    if (cc >= MIDIChannelMapping::switchCCOffset) {
        channel->setSwitches(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(value)));
    } else if (_isScreenHeld) {
        channel->nullTarget = value;
    } else {
        channel->faderValue = value;
        channel->nullTarget = std::nullopt; // what a dump or a recall left
    }
}

void PlaybackOutput::releaseScreen() {
    if (!std::exchange(_isScreenHeld, false)) return;
    for (ChannelState* channel : _consoleModel.allVisibleChannels())
        if (const std::optional<int> last = _last[std::size_t(MIDIChannelMapping::faderCC(channel->kind))])
            channel->faderValue = *last;
}

} // namespace tessik
