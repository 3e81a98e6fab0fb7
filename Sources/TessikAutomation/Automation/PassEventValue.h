#pragma once

#include "TessikKit/Models/ChannelState.h"

namespace tessik {

/// What one event of a pass changes: a fader's position, or all four switches of a channel.
class PassEventValue {
public:
    enum class Case : std::uint8_t { fader, switches };

    /// `position` is kept unchanged: the console's scale is 0 to 127, but a file may hold any number.
    static constexpr PassEventValue fader(std::int64_t position) { return {position, {}, Case::fader}; }
    static constexpr PassEventValue switches(ChannelSwitches switches) { return {0, switches, Case::switches}; }

    constexpr Case kind() const { return _case; }
    constexpr std::int64_t fader() const { return _fader; }          ///< 0 where the case is switches
    constexpr ChannelSwitches switches() const { return _switches; } ///< all off where the case is fader

    friend constexpr bool operator==(const PassEventValue&, const PassEventValue&) = default;

private:
    constexpr PassEventValue(std::int64_t fader, ChannelSwitches switches, Case kind)
        : _fader(fader), _switches(switches), _case(kind) {}

    std::int64_t _fader;
    ChannelSwitches _switches;
    Case _case;
};

} // namespace tessik
