#pragma once

#include "TessikKit/MIDI/MIDIPortInfo.h"
#include "TessikKit/MIDI/PortCable.h"

#include <QObject>
#include <QProperty>

namespace tessik {

/// A MIDI client with one output port and the destination that the user chose for it, found by its unique id whenever
/// it is there. Main thread only.
class MIDIDestinationPort {
public:
    /// `clientName` names the client, and with " Port" behind it the port; `label` begins the status line.
    MIDIDestinationPort(MIDIService& service, QString clientName, QString label);
    ~MIDIDestinationPort();

    /// Creates client and port, once. The port's status is returned; a client failure shows as port failure.
    MIDIStatus setupClient();
    /// Lists the destinations anew and derives the status line from the choice.
    void refreshDestinations();
    /// Records the choice, also one that is not listed.
    void selectDestination(std::optional<std::int32_t> uniqueID);

    /// Whether the chosen destination is listed now.
    bool isReachable() const { return destination() != nullptr; }
    /// Sends words to the chosen destination: `midiUnknownHandle` where it is absent, why there is no cable to it, else
    /// the service's status.
    MIDIStatus send(std::span<const std::uint32_t> words);

    enum class Change : std::uint8_t {
        chosen, ///< another destination, or none; reachable or not
        gone,   ///< the chosen destination vanished
        back    ///< it came back, also where it was gone for too short a time to be missed
    };
    /// Called after a choice or a refresh, when `isReachable` tells the new state.
    std::function<void(Change)> onChange;

    QProperty<std::vector<MIDIDestinationInfo>> availableDestinations;
    QProperty<std::optional<std::int32_t>> connectedDestinationID{std::nullopt};
    /// "Not connected"; label + ": " + name; label + ": reconnecting…".
    QProperty<QString> statusText{QStringLiteral("Not connected")};

    /// To the chosen destination. What happens to it is not in `statusText`.
    PortCable cable;

    QProperty<std::int64_t> sentCount{0}; ///< calls of `send` that went out
    /// Why the destination refused what was sent last; 0 where it did not, or is not there.
    QProperty<MIDIStatus> refusal{0};

    MIDIClientRef client() const { return _client; }
    MIDIPortRef outputPort() const { return _outputPort; }

private:
    const MIDIDestinationInfo* destination() const;
    MIDIEndpointRef handle() const;

    MIDIService& _service;
    const QString _clientName;
    const QString _label;
    MIDIClientRef _client = 0;
    MIDIPortRef _outputPort = 0;
    std::vector<MIDIDestinationInfo> _destinations; // what availableDestinations shows
    MIDIEndpointRef _reachable = 0;                 // the chosen destination's handle at the last look, 0 while absent
    QObject _notifications;                         // receives the setup notices on the main thread
};

} // namespace tessik
