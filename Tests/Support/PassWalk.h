#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <cmath>

namespace tessik::test {

/// The tape's position within a pass, in frames.
inline double offsetIn(const AutomationPass& pass, double tapeFrame) {
    const double whole = std::floor(tapeFrame);
    const std::int64_t length = pass.events.isEmpty() ? 0 : pass.events.constLast().frameOffset;
    return double(pass.offsetOf(std::int64_t(whole), length)) + tapeFrame - whole;
}

/// A lane's value at a frame offset, by walking over all events, and how far from there its nearest event is.
struct Said {
    std::optional<int> value;
    double nearestEvent = 1e9;           // frames
    std::optional<std::int64_t> eventAt; // the last at or before the offset
};

inline Said whatItSays(const AutomationPass& pass, const QList<ChannelSnapshot>& defaults, int cc, double offset) {
    Said said;
    for (const ChannelSnapshot& channel : pass.initialState.value_or(defaults)) {
        if (MIDIChannelMapping::faderCC(channel.kind) == cc) said.value = channel.faderPosition();
        if (MIDIChannelMapping::switchCC(channel.kind) == cc)
            said.value = MIDIChannelMapping::encodeSwitchByte(channel.switches());
    }
    for (const TimedEvent& event : pass.events) {
        const bool isFader = event.value.kind() == PassEventValue::Case::fader;
        if (cc != (isFader ? MIDIChannelMapping::faderCC(event.kind) : MIDIChannelMapping::switchCC(event.kind)))
            continue;
        said.nearestEvent = std::min(said.nearestEvent, std::abs(double(event.frameOffset) - offset));
        if (double(event.frameOffset) > offset) continue;
        said.value = isFader ? int(event.value.fader()) : MIDIChannelMapping::encodeSwitchByte(event.value.switches());
        said.eventAt = event.frameOffset;
    }
    return said;
}

} // namespace tessik::test
