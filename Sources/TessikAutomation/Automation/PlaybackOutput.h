#pragma once

#include "TessikAutomation/Desk/MIDIOutputManager.h"

#include <array>

namespace tessik {

/// Sends automation to the desk and the screen. While the screen is held (NULL), its faders stay with the hands and the
/// automation appears as NULL targets. Leaves alone channels that the console's size does not show.
class PlaybackOutput {
public:
    PlaybackOutput(ConsoleModel& consoleModel, MIDIOutputManager& desk, const UptimeClock& clock)
        : _consoleModel(consoleModel), _desk(desk), _clock(clock) {
        _sentAt.fill(distantPast);
    }

    /// The channel of a lane; null if not shown.
    ChannelState* visibleChannel(int cc) const;

    /// True if the desk merely echoes our own value: it reads a fader that a hand has moved once its cable is free, and
    /// by then may read what we sent. Ask before `noteChange`.
    bool isEcho(const ConsoleChange& change) const;
    /// Notes a change of the console. Returns what the lane was before; none if nothing was ever seen or sent.
    std::optional<int> noteChange(const ConsoleChange& change);
    /// Sends one value to the desk and the screen.
    void play(int cc, int value, MIDIOutputManager::Urgency urgency);
    /// The same, ahead of all else, after the console moved away from the value.
    void putBack(int cc, int value);
    /// Sends a whole state, or what is known of one, to the desk and the screen.
    void assertState(const ControllerValues& values);

    void holdScreen() { _isScreenHeld = true; }
    /// Shows what the desk holds again, if the screen was held.
    void releaseScreen();
    bool isScreenHeld() const { return _isScreenHeld; }

private:
    void show(int cc, int value);

    ConsoleModel& _consoleModel;
    MIDIOutputManager& _desk;
    const UptimeClock& _clock;
    ControllerValues _last; // seen or sent
    std::array<Uptime, MIDIChannelMapping::controllerCount> _sentAt;
    bool _isScreenHeld = false;
};

} // namespace tessik
