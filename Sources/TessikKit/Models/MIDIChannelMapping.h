#pragma once

#include "TessikKit/Models/ChannelState.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tessik {

/// The console's Control Change map, both ways. Faders: CC 0-31 inputs, 32-39 groups, 48 stereo. Switch bytes: the same
/// plus 64. The console transmits CC 40-47 and 104-111 with no documented meaning; they stay unmapped.
namespace MIDIChannelMapping {

inline constexpr int controllerCount = 128;
inline constexpr int switchCCOffset = 64;

/// The controller of a channel's fader. Pass only channels that exist.
constexpr int faderCC(ChannelKind kind) {
    switch (kind.kind()) {
    case ChannelKind::Case::input: return int(kind.number()) - 1;
    case ChannelKind::Case::group: return int(kind.number()) + 31;
    case ChannelKind::Case::stereo: break;
    }
    return 48;
}

/// The controller of a channel's switch byte. Pass only channels that exist.
constexpr int switchCC(ChannelKind kind) { return faderCC(kind) + switchCCOffset; }

/// The channel whose fader a controller carries.
constexpr std::optional<ChannelKind> channelKindForFaderCC(int cc) {
    if (cc >= 0 && cc <= 31) return ChannelKind::input(cc + 1);
    if (cc >= 32 && cc <= 39) return ChannelKind::group(cc - 31);
    if (cc == 48) return ChannelKind::stereo();
    return std::nullopt;
}

/// The channel whose switch byte a controller carries.
constexpr std::optional<ChannelKind> channelKindForSwitchCC(int cc) {
    return channelKindForFaderCC(cc - switchCCOffset);
}

/// The four switches in one data byte, active low in bits 0, 1, 2 and 5; bits 3 and 4 set, bit 6 clear.
constexpr std::uint8_t encodeSwitchByte(ChannelSwitches switches) {
    return std::uint8_t(63 - (switches.monMuted ? 1 : 0) - (switches.auxMuted ? 2 : 0) - (switches.eqOn ? 4 : 0) -
                        (switches.chanMuted ? 32 : 0));
}

constexpr ChannelSwitches decodeSwitchByte(std::uint8_t byte) {
    return {.monMuted = !(byte & 1), .auxMuted = !(byte & 2), .eqOn = !(byte & 4), .chanMuted = !(byte & 32)};
}

/// A channel's fader or switch byte, as carried by its controller.
inline int controllerValue(const ChannelState& channel, int cc) {
    return cc < switchCCOffset ? channel.faderValue.value() : encodeSwitchByte(channel.switches());
}

} // namespace MIDIChannelMapping

/// A value for each controller that has one.
using ControllerValues = std::array<std::optional<int>, MIDIChannelMapping::controllerCount>;

} // namespace tessik
