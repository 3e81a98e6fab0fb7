#include "TessikKit/MIDI/MIDIInputConnection.h"

#include "TessikKit/MIDI/Log.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <utility>

namespace tessik {

MIDIInputConnection::MIDIInputConnection(MIDIService& service, QString name, WordHandler onWord)
    : cable([this](MIDIEndpointRef source) { return _service.connectSource(_inputPort, source); },
            [this](MIDIEndpointRef source) { return _service.isConnected(_inputPort, source); }),
      clientName(std::move(name)),
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
    // A port failure that follows from a client failure replaces its text.
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
        cable.leave();
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
    } else if (cable.takeDue()) {
        const bool wasConnected = cable.refusal.value() == 0;
        connect(*source, true);
        if (wasConnected) noteDataLost();
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
        cable.leave();
    }
    const MIDIStatus status = cable.lay(source.endpoint);
    connectedSourceID = source.uniqueID;
    connectedSourceName = source.name;
    connectedEndpoint = source.endpoint;
    if (status == 0) {
        statusText = QStringLiteral("Connected: %1").arg(source.name);
        return;
    }
    // The choice is recorded anyway: the next change of the setup tries again.
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
    cable.leave();
    connectedSourceID = std::nullopt;
    connectedSourceName = std::nullopt;
    connectedEndpoint = std::nullopt;
    statusText = QStringLiteral("Not connected");
}

void MIDIInputConnection::receive(const MIDIEventList& list) {
    if (list.dataLost) {
        _sysEx.reset();
        log(QStringLiteral("MIDI input overrun: messages were lost"));
        _queue.push({.kind = Kind::dataLost});
    }
    Lists counted{.count = 1, .lastBegan = _words.count()};
    for (const MIDIEventPacket& packet : list.packets) {
        counted.words += std::int64_t(packet.words.size());
        const auto words = packet.words.first(std::min(packet.words.size(), maxPacketWords));
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::uint32_t word = words[i];
            _words.record(packet.stamp, word);
            const MIDIWord whole{packet.stamp, word};
            if (whole.messageType() == 1 || whole.messageType() == 2) {
                _onWord(whole);
            } else if (whole.messageType() == 3 && i + 1 < words.size()) {
                _words.record(packet.stamp, words[++i]);
                takeSysEx(packet.stamp, word, words[i]);
            }
        }
    }
    if (list.packets.empty()) return;
    counted.lastEnded = _words.count();
    const auto keep = [&](Overflow& overflow) {
        counted.count += overflow.lists.count;
        counted.words += overflow.lists.words;
        overflow.lists = counted;
    };
    if (!overflows(_listsWaiting, keep)) _queue.push({.kind = Kind::listCounters, .lists = counted});
}

void MIDIInputConnection::submit(const MIDIWord& word, std::optional<int> key) {
    const auto keep = [&](Overflow& overflow) {
        if (!key) {
            ++overflow.lost;
            return;
        }
        overflow.overtaken +=
            std::int64_t(std::erase_if(overflow.latest, [&](const auto& older) { return older.first == *key; }));
        overflow.latest.emplace_back(*key, word);
    };
    if (!overflows(_tasksWaiting, keep)) _queue.push({.kind = Kind::task, .word = word});
}

/// Whether what comes now does not fit in the queue and is kept beside it. Everything earlier is in the queue;
/// everything later comes after the entry that picks up what was kept, so the order holds.
bool MIDIInputConnection::overflows(Waiting& waiting, const std::function<void(Overflow&)>& keep) {
    const auto hasRoom = [&] { return waiting < maxWaiting; };
    if (!_isOverflowing && hasRoom()) {
        ++waiting;
        return false;
    }
    const std::lock_guard lock(_overflowing);
    if (!_isOverflowing && hasRoom()) {
        ++waiting;
        return false;
    }
    if (!_isOverflowing.exchange(true)) _queue.push({.kind = Kind::overflow});
    keep(_overflow);
    return true;
}

void MIDIInputConnection::takeOverflow() {
    Overflow taken;
    {
        const std::lock_guard lock(_overflowing);
        taken = std::exchange(_overflow, {});
        _isOverflowing = false;
    }
    overtakenCount = overtakenCount.value() + taken.overtaken;
    if (taken.overtaken > 0 && _onOvertaken) _onOvertaken(taken.overtaken);
    if (taken.lost > 0) noteDataLost();
    for (const auto& [key, word] : taken.latest)
        if (_onTask) _onTask(word);
    countLists(taken.lists);
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
        --_tasksWaiting;
        if (_onTask) _onTask(entry.word);
        break;
    case Kind::listCounters:
        --_listsWaiting;
        countLists(entry.lists);
        break;
    case Kind::dataLost: noteDataLost(); break;
    case Kind::overflow: takeOverflow(); break;
    }
}

void MIDIInputConnection::countLists(const Lists& lists) {
    if (lists.lastEnded > lists.lastBegan) _lastLists = lists;
    rawPacketListCount = rawPacketListCount.value() + lists.count;
    rawByteCount = rawByteCount.value() + 4 * lists.words;
}

QString MIDIInputConnection::lastRawHex() const {
    QStringList words;
    std::int64_t next = _lastLists.lastBegan;
    const std::vector<WordRing::Entry> entries = _words.since(next);
    std::int64_t n = next - std::int64_t(entries.size());
    for (const WordRing::Entry& entry : entries)
        if (n++ < _lastLists.lastEnded)
            words += QStringLiteral("%1").arg(entry.word, 8, 16, QLatin1Char('0')).toUpper();
    return words.isEmpty() ? QStringLiteral("—") : words.join(QLatin1Char(' '));
}

void MIDIInputConnection::noteDataLost() {
    dataLostCount = dataLostCount.value() + 1;
    if (_onDataLost) _onDataLost();
}

} // namespace tessik
