#include "TessikKit/MIDI/MIDIInputConnection.h"

#include "TessikKit/MIDI/Log.h"
#include "TessikKit/MIDI/MIDIWords.h"

namespace tessik {

namespace {

void appendHex(QByteArray& text, std::uint32_t word) {
    constexpr char digits[] = "0123456789ABCDEF";
    if (!text.isEmpty()) text += ' ';
    for (int shift = 28; shift >= 0; shift -= 4)
        text += digits[word >> shift & 0xF];
}

} // namespace

MIDIInputConnection::MIDIInputConnection(MIDIService& service, QString name, WordHandler onWord)
    : clientName(std::move(name)),
      _service(service),
      _onWord(std::move(onWord)),
      _queue([this](Entry& entry) { run(entry); }) {
    setUpClient();
    refreshSources();
}

MIDIInputConnection::~MIDIInputConnection() { _service.disposeClient(_client); }

void MIDIInputConnection::log(const QString& message) const { logLine(clientName, message); }

void MIDIInputConnection::setUpClient() {
    const auto report = [this](const char* call, MIDIStatus status) {
        if (status == 0) return;
        log(QStringLiteral("%1 FAILED OSStatus=%2").arg(QLatin1String(call)).arg(status));
        statusText = QStringLiteral("%1 failed: OSStatus %2").arg(QLatin1String(call)).arg(status);
    };
    const auto notify = [this] {
        QMetaObject::invokeMethod(
            &_notifications, [this] { refreshSources(); }, Qt::QueuedConnection);
    };
    // A port failure that follows a client failure replaces its text.
    report("MIDIClientCreateWithBlock", _service.createClient(clientName, notify, _client));
    report("MIDIInputPortCreateWithProtocol", _service.createInputPort(
                                                  _client, clientName + QStringLiteral(" Input"),
                                                  [this](const MIDIEventList& list) { receive(list); }, _inputPort));
}

void MIDIInputConnection::refreshSources() {
    availableSources = describePorts(_service.sources(), QStringLiteral("Unknown MIDI Source"));
    if (!connectedSourceID.value()) return;

    const std::vector<MIDISourceInfo> sources = availableSources.value();
    const MIDISourceInfo* source = findPort(sources, connectedSourceID.value());
    if (!source) {
        connectedSourceWasRecentlyMissing = true;
        statusText = QStringLiteral("Source reconnecting…");
        return;
    }
    const std::optional<MIDIEndpointRef> old = connectedEndpoint.value();
    const bool wasMissing = connectedSourceWasRecentlyMissing.value();
    if (old != source->endpoint || wasMissing) {
        log(QStringLiteral("Reconnecting to %1 (endpoint %2 -> %3)%4")
                .arg(source->name, old ? QStringLiteral("Optional(%1)").arg(*old) : QStringLiteral("nil"),
                     QString::number(source->endpoint), wasMissing ? QStringLiteral(" [was missing]") : QString()));
        connect(*source, true);
    }
    connectedSourceWasRecentlyMissing = false;
}

void MIDIInputConnection::selectSource(std::optional<std::int32_t> uniqueID) {
    const std::vector<MIDISourceInfo> sources = availableSources.value();
    const MIDISourceInfo* source = findPort(sources, uniqueID);
    if (source)
        connect(*source, false);
    else
        disconnect();
}

void MIDIInputConnection::connect(const MIDISourceInfo& source, bool reconnecting) {
    if (!reconnecting && connectedSourceID.value()) {
        const std::vector<MIDISourceInfo> sources = availableSources.value();
        if (const MIDISourceInfo* old = findPort(sources, connectedSourceID.value()))
            _service.disconnectSource(_inputPort, old->endpoint);
    }
    const MIDIStatus status = _service.connectSource(_inputPort, source.endpoint);
    connectedSourceID = source.uniqueID;
    connectedSourceName = source.name;
    connectedEndpoint = source.endpoint;
    if (status == 0) {
        statusText = QStringLiteral("Connected: %1").arg(source.name);
        return;
    }
    // The choice is recorded all the same: the next change of the setup tries again.
    log(QStringLiteral("MIDIPortConnectSource FAILED OSStatus=%1 name=%2 uid=%3")
            .arg(QString::number(status), source.name, QString::number(source.uniqueID)));
    statusText = QStringLiteral("Connected: %1 (MIDIPortConnectSource returned OSStatus %2)")
                     .arg(source.name, QString::number(status));
}

void MIDIInputConnection::disconnect() {
    if (!connectedSourceID.value()) return;
    const std::vector<MIDISourceInfo> sources = availableSources.value();
    const MIDISourceInfo* source = findPort(sources, connectedSourceID.value());
    if (!source) return;
    _service.disconnectSource(_inputPort, source->endpoint);
    connectedSourceID = std::nullopt;
    connectedSourceName = std::nullopt;
    connectedEndpoint = std::nullopt;
    statusText = QStringLiteral("Not connected");
}

void MIDIInputConnection::receive(const MIDIEventList& list) {
    if (list.dataLost) {
        _sysEx.reset();
        log(QStringLiteral("MIDI input overrun: messages were lost"));
        _queue.push({Kind::dataLost, {}, 0, {}});
    }
    std::size_t wordCount = 0;
    QByteArray hex;
    for (const MIDIEventPacket& packet : list.packets) {
        wordCount += packet.words.size();
        const auto words = packet.words.first(std::min(packet.words.size(), maxPacketWords));
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::uint32_t word = words[i];
            appendHex(hex, word);
            const std::uint8_t type = word >> 28;
            if (type == 1 || type == 2) {
                _onWord({packet.stamp, type, std::uint8_t(word >> 16), int(word >> 8 & 0xFF), int(word & 0xFF)});
            } else if (type == 3 && i + 1 < words.size()) {
                appendHex(hex, words[++i]);
                takeSysEx(packet.stamp, word, words[i]);
            }
        }
    }
    if (!list.packets.empty()) _queue.push({Kind::listCounters, {}, wordCount, std::move(hex)});
}

void MIDIInputConnection::takeSysEx(Uptime stamp, std::uint32_t first, std::uint32_t second) {
    const std::int64_t dropped = _sysEx.droppedCount();
    const auto message = _sysEx.take(first, second);
    if (dropped == 0 && _sysEx.droppedCount() > 0)
        log(QStringLiteral("System Exclusive message longer than %1 bytes dropped").arg(SysExAssembler::maxBytes));
    if (message && _onSysEx) _onSysEx(stamp, *message);
}

void MIDIInputConnection::run(Entry& entry) {
    switch (entry.kind) {
    case Kind::none: break;
    case Kind::task:
        if (_onTask) _onTask(entry.stamp, entry.payload);
        break;
    case Kind::listCounters:
        rawPacketListCount = rawPacketListCount.value() + 1;
        rawByteCount = rawByteCount.value() + 4 * std::int64_t(entry.payload);
        if (!entry.hex.isEmpty()) lastRawHex = QString::fromLatin1(entry.hex);
        break;
    case Kind::dataLost:
        dataLostCount = dataLostCount.value() + 1;
        if (_onDataLost) _onDataLost();
        break;
    }
}

} // namespace tessik
