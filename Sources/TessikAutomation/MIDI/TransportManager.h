#pragma once

#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikKit/Models/Published.h"
#include "TessikKit/Models/Signal.h"
#include "TessikKit/Models/TimecodePosition.h"
#include "TessikKit/Models/UptimeClock.h"

#include <QTimer>

#include <deque>

namespace tessik {

/// The MIDI Machine Control commands that drive a recorder, by their codes (MMC 1.0, RP-013).
enum class MMCCommand : std::uint8_t {
    stop = 0x01,
    play = 0x02,
    fastForward = 0x04,
    rewind = 0x05,
    recordStrobe = 0x06,
    recordExit = 0x07,
    pause = 0x09,
};

/// The bytes between F0 and F7, each reduced to seven bits.
namespace MMCMessage {
inline constexpr std::uint8_t locateCode = 0x44;
std::vector<std::uint8_t> command(std::uint8_t deviceID, MMCCommand command);
std::vector<std::uint8_t> locate(std::uint8_t deviceID, const TimecodePosition& position);
} // namespace MMCMessage

/// Drives the recorder by MIDI Machine Control, on a port of its own. Nothing comes back: only timecode shows what the
/// machine does. Main thread only.
class TransportManager {
public:
    /// Addresses every machine; some ignore it.
    static constexpr std::uint8_t allCall = 127;

    /// Creates the client "TessikAutomation Transport" and lists the destinations.
    explicit TransportManager(MIDIService& service, const UptimeClock& clock = UptimeClock::system());

    void setupClient();
    void refreshDestinations() { port.refreshDestinations(); }
    void selectDestination(std::optional<std::int32_t> uniqueID) { port.selectDestination(uniqueID); }

    /// Availability, choice and status text of "Send To".
    MIDIDestinationPort port;

    /// The machine addressed; `allCall` until another is chosen on this computer.
    Published<std::uint8_t, TransportManager> deviceID;
    /// Stores the choice, even if unchanged.
    void setDeviceID(std::uint8_t chosen);

    /// Does nothing while the destination is absent. A port that is momentarily full is retried for two seconds; what
    /// is lost shows as the port's `refusal`.
    void send(MMCCommand command);
    /// A stop was asked for, whether or not the machine obeys.
    Signal<> stopSent;
    void locate(const TimecodePosition& position);
    /// Sends what the port could not take before. The manager's own timer calls it; tests call it themselves.
    void pump();

private:
    void send(std::span<const std::uint8_t> message);
    void log(const QString& message) const;

    struct Waiting {
        std::vector<std::uint32_t> words;
        Uptime since;
    };

    const UptimeClock& _clock;
    std::deque<Waiting> _waiting; // messages, in order
    Signal<MIDIDestinationPort::Change>::Connection _portListener;
    QTimer _timer;
};

} // namespace tessik
