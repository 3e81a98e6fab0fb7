#pragma once

#include "TessikKit/MIDI/MIDIPortInfo.h"
#include "TessikKit/MIDI/PortCable.h"
#include "TessikKit/MIDI/WordRing.h"
#include "TessikKit/Models/Published.h"
#include "TessikKit/Models/Signal.h"

#include <QObject>

namespace tessik {

/// A MIDI client with one output port and the destination that the user chose for it, found by its unique id whenever
/// it is present. Main thread only.
class MIDIDestinationPort {
public:
    /// `clientName` names the client and, with " Port" appended, the port; `label` begins the status line.
    MIDIDestinationPort(MIDIService& service, QString clientName, QString label,
                        const UptimeClock& clock = UptimeClock::system());
    ~MIDIDestinationPort();

    /// Creates client and port, once. Returns the port's status; a client failure appears as a port failure.
    MIDIStatus setupClient();
    /// Lists the destinations again and derives the status line from the choice.
    void refreshDestinations();
    /// Records the choice, even of a destination that is not listed.
    void selectDestination(std::optional<std::int32_t> uniqueID);

    /// Whether the chosen destination is listed now.
    bool isReachable() const { return destination() != nullptr; }
    /// Sends words to the chosen destination. Returns `midiUnknownHandle` if it is absent, else why there is no cable
    /// to it, else the service's status.
    MIDIStatus send(std::span<const std::uint32_t> words);
    /// Shows as `refusal` what the owner of the port gave up sending.
    void noteLost(MIDIStatus status) { refusal = status; }

    enum class Change : std::uint8_t {
        chosen, ///< another destination, or none; reachable or not
        gone,   ///< the chosen destination vanished
        back    ///< it came back, perhaps before it was missed
    };
    /// After a choice or a refresh, when `isReachable` gives the new state.
    Signal<Change> changed;

    Published<std::vector<MIDIDestinationInfo>, MIDIDestinationPort> availableDestinations;
    Published<std::optional<std::int32_t>, MIDIDestinationPort> connectedDestinationID{std::nullopt};
    /// "Not connected"; label + ": " + name; label + ": reconnecting…".
    Published<QString, MIDIDestinationPort> statusText{QStringLiteral("Not connected")};

    /// The cable to the chosen destination. Its state is not in `statusText`.
    PortCable cable;

    Published<std::int64_t, MIDIDestinationPort> sentCount{0}; ///< calls of `send` that went out
    /// Why the destination refused the last send; 0 if it did not, or is absent.
    Published<MIDIStatus, MIDIDestinationPort> refusal{0};

    /// Every word that went out, with the time of sending.
    const WordRing& words() const { return _words; }

    MIDIClientRef client() const { return _client; }
    MIDIPortRef outputPort() const { return _outputPort; }

private:
    const MIDIDestinationInfo* destination() const;
    MIDIEndpointRef handle() const;

    MIDIService& _service;
    const UptimeClock& _clock;
    WordRing _words;
    const QString _clientName;
    const QString _label;
    MIDIClientRef _client = 0;
    MIDIPortRef _outputPort = 0;
    std::vector<MIDIDestinationInfo> _destinations; // what availableDestinations shows
    MIDIEndpointRef _reachable = 0;                 // the chosen destination's handle at the last look, 0 while absent
    QObject _notifications;                         // receives the setup notices on the main thread
};

} // namespace tessik
