#pragma once

#include "TessikAutomation/ManualSettings/ManualChannelSettings.h"

namespace tessik {

/// One channel at one moment, in snapshots and as the starting state of passes.
struct ChannelSnapshot {
    ChannelKind kind = ChannelKind::stereo();
    std::int64_t faderValue = 0; ///< 0 to 127 when captured here; a file may hold any number
    bool monMuted = false;
    bool auxMuted = false;
    bool eqOn = false;
    bool chanMuted = false;
    std::optional<ManualChannelSettings> manualSettings; ///< absent in older files and in starting states of passes

    /// The channel as the model holds it now, without manual settings.
    static ChannelSnapshot of(const ChannelState& channel);
    /// The position clamped to the console's scale of 0 to 127.
    int faderPosition() const { return int(std::clamp<std::int64_t>(faderValue, 0, 127)); }
    ChannelSwitches switches() const { return {monMuted, auxMuted, eqOn, chanMuted}; }
    void setSwitches(ChannelSwitches held);

    friend bool operator==(const ChannelSnapshot&, const ChannelSnapshot&) = default;
};

template <>
inline constexpr auto recordFields<ChannelSnapshot> = std::tuple{
    RecordField{"kind", &ChannelSnapshot::kind},
    RecordField{"faderValue", &ChannelSnapshot::faderValue},
    RecordField{"monMuted", &ChannelSnapshot::monMuted},
    RecordField{"auxMuted", &ChannelSnapshot::auxMuted},
    RecordField{"eqOn", &ChannelSnapshot::eqOn},
    RecordField{"chanMuted", &ChannelSnapshot::chanMuted},
    RecordField{"manualSettings", &ChannelSnapshot::manualSettings},
};

} // namespace tessik
