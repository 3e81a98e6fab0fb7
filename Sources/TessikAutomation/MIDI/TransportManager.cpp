#include "TessikAutomation/MIDI/TransportManager.h"

#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikKit/MIDI/Log.h"
#include "TessikKit/MIDI/MIDIWords.h"

namespace tessik {

using namespace std::chrono_literals;

namespace {

constexpr Uptime patience = 2s;
constexpr std::uint8_t realTime = 0x7F;
constexpr std::uint8_t machineControlCommand = 0x06;

} // namespace

std::vector<std::uint8_t> MMCMessage::command(std::uint8_t deviceID, MMCCommand command) {
    return {realTime, std::uint8_t(deviceID & 0x7F), machineControlCommand, std::uint8_t(command)};
}

std::vector<std::uint8_t> MMCMessage::locate(std::uint8_t deviceID, const TimecodePosition& position) {
    constexpr std::uint8_t byteCount = 6;
    constexpr std::uint8_t target = 0x01;
    constexpr std::uint8_t subframes = 0;
    return {realTime,
            std::uint8_t(deviceID & 0x7F),
            machineControlCommand,
            locateCode,
            byteCount,
            target,
            std::uint8_t(std::uint8_t(position.frameRate) << 5 | position.withinDay().hours),
            std::uint8_t(position.minutes & 0x7F),
            std::uint8_t(position.seconds & 0x7F),
            std::uint8_t(position.frames & 0x7F),
            subframes};
}

TransportManager::TransportManager(MIDIService& service, const UptimeClock& clock)
    : port(service, QStringLiteral("TessikAutomation Transport"), QStringLiteral("Transport"), clock),
      deviceID(SavedSettings::mmcDeviceID().value_or(allCall)),
      _clock(clock) {
    // A late command would surprise.
    _portListener = port.changed.connect([this](MIDIDestinationPort::Change) { _waiting.clear(); });
    _timer.setInterval(5ms);
    _timer.callOnTimeout([this] { pump(); });
    setupClient();
    refreshDestinations();
}

void TransportManager::setupClient() {
    if (const MIDIStatus status = port.setupClient())
        log(QStringLiteral("MIDIOutputPortCreate FAILED OSStatus=%1").arg(status));
}

void TransportManager::setDeviceID(std::uint8_t chosen) {
    deviceID = chosen;
    SavedSettings::setInteger(SavedSettings::Key::mmcDeviceID, chosen);
}

void TransportManager::send(MMCCommand command) {
    send(MMCMessage::command(deviceID, command));
    if (command == MMCCommand::stop) stopSent();
}
void TransportManager::locate(const TimecodePosition& position) { send(MMCMessage::locate(deviceID, position)); }

void TransportManager::send(std::span<const std::uint8_t> message) {
    if (!port.isReachable()) return;
    std::vector<std::uint32_t> words;
    MIDIWords::appendSysEx(words, message);
    _waiting.push_back({std::move(words), _clock.now()});
    pump();
}

void TransportManager::pump() {
    for (; !_waiting.empty(); _waiting.pop_front()) {
        const MIDIStatus status = port.send(_waiting.front().words);
        if (status == midiWouldBlock && _clock.now() < _waiting.front().since + patience) {
            if (!_timer.isActive()) _timer.start();
            return;
        }
        if (status != 0) log(QStringLiteral("MMC not sent: OSStatus=%1").arg(status));
        if (status == midiWouldBlock) port.noteLost(status);
    }
    _timer.stop();
}

void TransportManager::log(const QString& message) const { logLine(QStringLiteral("TransportManager"), message); }

} // namespace tessik
