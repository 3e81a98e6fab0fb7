#pragma once

#include "TessikKit/Models/ChannelKind.h"
#include "TessikKit/Models/UptimeClock.h"

#include <QProperty>

#include <array>
#include <optional>

namespace tessik {

/// The four switches of a channel that the console transmits and obeys over MIDI.
struct ChannelSwitches {
    bool monMuted = false;  ///< monitor (in-line) mute
    bool auxMuted = false;  ///< aux-send mute
    bool eqOn = false;      ///< EQ switched in
    bool chanMuted = false; ///< the automatable MUTE below the fader

    friend bool operator==(const ChannelSwitches&, const ChannelSwitches&) = default;
};

/// The live state of one channel. Created once by the console model and never replaced, so others may keep a reference.
/// Any field may be written by whoever knows better: a message from the desk, playback, recall, the screen.
class ChannelState {
public:
    explicit ChannelState(ChannelKind channelKind)
        : kind(channelKind), id(channelKind.id()), displayName(channelKind.displayName()) {}

    const ChannelKind kind;
    const QString id;
    const QString displayName;

    QProperty<int> faderValue{0}; ///< long fader as the console transmits it, 0 (off) to 127 (+10 dB)
    QProperty<bool> monMuted{false};
    QProperty<bool> auxMuted{false};
    QProperty<bool> eqOn{false};
    QProperty<bool> chanMuted{false};
    /// When this channel's state last became known; the distant past means never.
    QProperty<Uptime> lastUpdate{distantPast};
    /// The fader value to which the physical fader should be moved.
    QProperty<std::optional<int>> nullTarget{std::nullopt};

    double normalizedFader() const { return faderValue.value() / 127.0; }

    ChannelSwitches switches() const;
    using Switch = QProperty<bool> ChannelState::*;
    /// The switches, with one of them as given.
    ChannelSwitches switchesWith(Switch which, bool on) const;
    /// Writes the switches in the order monitor, aux, EQ, channel; equal ones notify nobody.
    void setSwitches(ChannelSwitches switches);

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
