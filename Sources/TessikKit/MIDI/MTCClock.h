#pragma once

#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/MIDI/MTCDecoder.h"
#include "TessikKit/MIDI/MTCLock.h"
#include "TessikKit/Models/Published.h"
#include "TessikKit/Models/Signal.h"

#include <QTimer>

namespace tessik {

/// Receives MIDI Time Code on a connection of its own: publishes the last position that a run of quarter frames or a
/// full frame gave, whether timecode is running and, through the lock, where the tape is in between. Main thread only.
class MTCClock {
public:
    MTCClock(MIDIService& service, const QString& clientName, const UptimeClock& clock = UptimeClock::system());

    MIDIInputConnection connection;

    Published<std::optional<TimecodePosition>, MTCClock> currentPosition{std::nullopt}; ///< kept when timecode stops
    Published<bool, MTCClock> isRunning{false};
    Published<std::uint64_t, MTCClock>
        lastUpdateHostTime; ///< uptime in ns when quarter frames last completed a position

    MTCDecoder decoder;

    /// Where the tape is at an instant while timecode runs, in frames; none if unknown.
    std::optional<double> frame(Uptime at) { return _lock.frame(at); }
    /// When the tape will be at a frame; none if unknown.
    std::optional<Uptime> instant(double frame) const { return _lock.instant(frame); }
    /// Whether the tape's position is known; while it stands still after a silence, it is not.
    bool isTelling() const { return _lock.isTelling(); }
    /// The rate of these answers.
    std::optional<MTCFrameRate> rate() const { return _lock.rate(); }
    /// Arrival of the last one that left no doubt about the tape's position; kept when timecode stops.
    Uptime toldUntil() const { return _toldUntil; }
    /// Arrival of the first one after the last silence.
    Uptime quarterFramesSince() const { return _quarterFramesSince; }

    /// After a full frame moved the position: the machine was located.
    Signal<> fullFrame;

    void handleQuarterFrame(Uptime stamp, std::uint8_t dataByte);
    void handleFullFrame(const TimecodePosition& position);
    /// Declares timecode stopped after more than half a second without a completed run. The clock's own timer calls it
    /// four times a second.
    void checkStopped();

private:
    void receive(const MIDIWord& word);                                   // MIDI thread
    void receiveSysEx(Uptime stamp, std::span<const std::uint8_t> sysEx); // MIDI thread

    const UptimeClock& _clock;
    MTCLock _lock;
    Uptime _lastQuarterFrameStamp = distantPast;
    Uptime _toldUntil = distantPast;
    Uptime _quarterFramesSince = distantPast;
    QTimer _watchdog;
};

} // namespace tessik
