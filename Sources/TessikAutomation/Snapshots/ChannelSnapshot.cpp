#include "TessikAutomation/Snapshots/ChannelSnapshot.h"

namespace tessik {

ChannelSnapshot ChannelSnapshot::of(const ChannelState& channel) {
    return {.kind = channel.kind,
            .faderValue = channel.faderValue.value(),
            .monMuted = channel.monMuted.value(),
            .auxMuted = channel.auxMuted.value(),
            .eqOn = channel.eqOn.value(),
            .chanMuted = channel.chanMuted.value()};
}

void ChannelSnapshot::setSwitches(ChannelSwitches held) {
    monMuted = held.monMuted;
    auxMuted = held.auxMuted;
    eqOn = held.eqOn;
    chanMuted = held.chanMuted;
}

} // namespace tessik
