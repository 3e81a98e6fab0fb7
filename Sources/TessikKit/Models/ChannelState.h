#pragma once

#include "TessikKit/Models/ChannelKind.h"
#include "TessikKit/Models/Published.h"
#include "TessikKit/Models/UptimeClock.h"

#include <array>
#include <optional>

namespace tessik {

class ConsoleModel;

/// The four switches of a channel that the console transmits and obeys over MIDI.
struct ChannelSwitches {
    bool monMuted = false;  ///< monitor (in-line) mute
    bool auxMuted = false;  ///< aux-send mute
    bool eqOn = false;      ///< EQ switched in
    bool chanMuted = false; ///< the automatable MUTE below the fader

    friend bool operator==(const ChannelSwitches&, const ChannelSwitches&) = default;
};

/// The live state of one channel. Created once by the console model and never replaced, so others may keep a reference.
class ChannelState {
public:
    explicit ChannelState(ChannelKind channelKind)
        : kind(channelKind), id(channelKind.id()), displayName(channelKind.displayName()) {}

    const ChannelKind kind;
    const QString id;
    const QString displayName;

    Published<int, ConsoleModel> faderValue{0}; ///< long fader as the console transmits it, 0 (off) to 127 (+10 dB)
    Published<bool, ConsoleModel> monMuted{false};
    Published<bool, ConsoleModel> auxMuted{false};
    Published<bool, ConsoleModel> eqOn{false};
    Published<bool, ConsoleModel> chanMuted{false};
    /// When this channel's state last became known; the distant past means never.
    Published<Uptime, ConsoleModel> lastUpdate{distantPast};
    /// The fader value to which the physical fader should be moved.
    Published<std::optional<int>, ConsoleModel> nullTarget{std::nullopt};

    double normalizedFader() const { return faderValue.value() / 127.0; }

    ChannelSwitches switches() const;
    using Switch = Published<bool, ConsoleModel> ChannelState::*;
    /// The switches, with one of them as given.
    ChannelSwitches switchesWith(Switch which, bool on) const;

    enum class NullMatch : std::uint8_t {
        none,      ///< no NULL target
        needsUp,   ///< the fader is below its target
        needsDown, ///< the fader is above its target
        matched    ///< within half a decibel of its target; within 2 steps if either end is off
    };
    static constexpr std::array allNullMatches{NullMatch::none, NullMatch::needsUp, NullMatch::needsDown,
                                               NullMatch::matched};
    /// Which way a hand must move the fader. Compared in decibels, because a step is several of them at the bottom of
    /// the travel and a fraction of one at unity.
    NullMatch nullMatch() const;
    static NullMatch nullMatch(int fader, int target);
};

} // namespace tessik
