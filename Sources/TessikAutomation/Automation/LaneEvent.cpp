#include "TessikAutomation/Automation/LaneEvent.h"

#include <algorithm>

namespace tessik {
namespace {

/// A file may hold any number; the controller map knows only the console's.
std::optional<int> faderLane(ChannelKind kind) {
    const std::int64_t n = kind.number();
    const bool exists = kind.kind() == ChannelKind::Case::stereo ||
                        (n >= 1 && n <= (kind.kind() == ChannelKind::Case::input ? maxInputs : groupCount));
    return exists ? std::optional(MIDIChannelMapping::faderCC(kind)) : std::nullopt;
}

} // namespace

std::optional<LaneEvent> LaneEvent::of(const TimedEvent& event) {
    const std::optional<int> cc = faderLane(event.kind);
    if (!cc) return std::nullopt;
    if (event.value.kind() == PassEventValue::Case::fader)
        return LaneEvent{event.frameOffset, std::uint8_t(*cc),
                         std::uint8_t(std::clamp<std::int64_t>(event.value.fader(), 0, 127))};
    return LaneEvent{event.frameOffset, std::uint8_t(*cc + MIDIChannelMapping::switchCCOffset),
                     MIDIChannelMapping::encodeSwitchByte(event.value.switches())};
}

TimedEvent LaneEvent::timedEvent() const {
    if (const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc))
        return {frameOffset, *kind, PassEventValue::fader(value)};
    return {frameOffset, *MIDIChannelMapping::channelKindForSwitchCC(cc),
            PassEventValue::switches(MIDIChannelMapping::decodeSwitchByte(value))};
}

ControllerValues laneValues(const QList<ChannelSnapshot>& state) {
    ControllerValues values;
    for (const ChannelSnapshot& channel : state)
        if (const std::optional<int> cc = faderLane(channel.kind)) {
            values[std::size_t(*cc)] = channel.faderPosition();
            values[std::size_t(*cc + MIDIChannelMapping::switchCCOffset)] =
                MIDIChannelMapping::encodeSwitchByte(channel.switches());
        }
    return values;
}

} // namespace tessik
