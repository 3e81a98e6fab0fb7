#include "TessikAutomation/MIDI/MIDIDestinationPort.h"

namespace tessik {

MIDIDestinationPort::MIDIDestinationPort(MIDIService& service, QString clientName, QString label,
                                         const UptimeClock& clock)
    : cable([this](MIDIEndpointRef destination) { return _service.connectDestination(_outputPort, destination); },
            [this](MIDIEndpointRef destination) { return _service.isConnected(_outputPort, destination); }),
      _service(service),
      _clock(clock),
      _clientName(std::move(clientName)),
      _label(std::move(label)) {}

MIDIDestinationPort::~MIDIDestinationPort() { _service.disposeClient(_client); }

MIDIStatus MIDIDestinationPort::setupClient() {
    const auto notify = [this] {
        QMetaObject::invokeMethod(
            &_notifications, [this] { refreshDestinations(); }, Qt::QueuedConnection);
    };
    _service.createClient(_clientName, notify, _client);
    return _service.createOutputPort(_client, _clientName + QStringLiteral(" Port"), _outputPort);
}

void MIDIDestinationPort::refreshDestinations() {
    _destinations = describePorts(_service.destinations(), QStringLiteral("Unknown MIDI Destination"));
    availableDestinations = _destinations;
    if (connectedDestinationID.value()) {
        const MIDIDestinationInfo* chosen = destination();
        statusText = chosen ? _label + QStringLiteral(": ") + chosen->name : _label + QStringLiteral(": reconnecting…");
    }
    const MIDIEndpointRef before = std::exchange(_reachable, handle());
    if (_reachable == 0)
        cable.leave();
    else if (_reachable != before || cable.takeDue())
        refusal = cable.lay(_reachable) == 0 ? 0 : refusal.value();
    if (_reachable != before) refusal = 0;
    if (_reachable != before) changed(_reachable ? Change::back : Change::gone);
}

void MIDIDestinationPort::selectDestination(std::optional<std::int32_t> uniqueID) {
    const bool another = connectedDestinationID.value() != uniqueID;
    connectedDestinationID = uniqueID;
    const MIDIDestinationInfo* chosen = destination();
    statusText = chosen ? _label + QStringLiteral(": ") + chosen->name : QStringLiteral("Not connected");
    _reachable = handle();
    cable.leave();
    if (_reachable != 0)
        cable.lay(_reachable);
    else
        _service.connectDestination(_outputPort, 0); // other programs may want it
    refusal = 0;
    if (another) changed(Change::chosen);
}

MIDIStatus MIDIDestinationPort::send(std::span<const std::uint32_t> words) {
    const MIDIDestinationInfo* chosen = destination();
    if (!chosen) return midiUnknownHandle;
    if (cable.refusal.value() != 0) return cable.refusal;
    if (cable.isCut.value()) return midiNotConnected;
    const MIDIStatus status = _service.send(_outputPort, chosen->endpoint, words);
    if (status == 0) {
        sentCount = sentCount.value() + 1;
        for (const std::uint32_t word : words)
            _words.record(_clock.now(), word);
    }
    if (status != midiWouldBlock) refusal = status;
    return status;
}

const MIDIDestinationInfo* MIDIDestinationPort::destination() const {
    const std::optional<std::int32_t> chosen = connectedDestinationID.value();
    return chosen ? findPort(_destinations, chosen) : nullptr;
}

MIDIEndpointRef MIDIDestinationPort::handle() const {
    const MIDIDestinationInfo* chosen = destination();
    return chosen ? chosen->endpoint : 0;
}

} // namespace tessik
