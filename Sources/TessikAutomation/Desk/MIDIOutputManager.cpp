#include "TessikAutomation/Desk/MIDIOutputManager.h"

#include "TessikKit/MIDI/MIDIWords.h"

#include <algorithm>

namespace tessik {

using namespace std::chrono_literals;

MIDIOutputManager::MIDIOutputManager(MIDIService& service, const UptimeClock& clock)
    : port(service, QStringLiteral("TessikAutomation Output"), QStringLiteral("Output"), clock), _clock(clock) {
    using Change = MIDIDestinationPort::Change;
    _portListener = port.changed.connect([this](Change change) {
        if (change == Change::chosen)
            _pacer.forget();
        else
            _pacer.lose();
        if (port.isReachable()) _pacer.regain();
        pump();
    });
    _channelNotifier = midiChannel.addNotifier([this] { assertAgain(); });
    _timer.setTimerType(Qt::PreciseTimer);
    _timer.callOnTimeout([this] { pump(); });
}

void MIDIOutputManager::setupClient() { port.setupClient(); }

void MIDIOutputManager::sendFader(ChannelKind kind, int value, Urgency urgency) {
    send(MIDIChannelMapping::faderCC(kind), std::clamp(value, 0, 127), urgency);
}

void MIDIOutputManager::sendSwitches(ChannelKind kind, ChannelSwitches switches, Urgency urgency) {
    send(MIDIChannelMapping::switchCC(kind), MIDIChannelMapping::encodeSwitchByte(switches), urgency);
}

void MIDIOutputManager::send(int cc, int value, Urgency urgency) {
    ask(cc, value, urgency);
    pump();
}

void MIDIOutputManager::assertState(std::span<const DeskChannelState> channels) {
    ControllerValues values;
    for (const DeskChannelState& channel : channels) {
        values[std::size_t(MIDIChannelMapping::faderCC(channel.kind))] = std::clamp(channel.faderValue, 0, 127);
        values[std::size_t(MIDIChannelMapping::switchCC(channel.kind))] =
            MIDIChannelMapping::encodeSwitchByte(channel.switches);
    }
    assertState(values);
}

void MIDIOutputManager::assertState(const ControllerValues& values) {
    for (const int cc : DeskPacer::safeOrder([&](int controller) { return values[std::size_t(controller)]; }))
        ask(cc, *values[std::size_t(cc)], Urgency::assertion);
    pump();
}

bool MIDIOutputManager::noteReceived(Uptime stamp, int cc, int value) {
    const bool isNews = _pacer.noteReceived(stamp, cc, value);
    pump();
    return isNews;
}

void MIDIOutputManager::assertAgain() {
    _pacer.lose();
    if (port.isReachable()) _pacer.regain();
    pump();
}

void MIDIOutputManager::resetChannels(ConsoleModel& consoleModel, bool sendToConsole) {
    const ControllerValues zeroed = consoleModel.zeroed(sendToConsole);
    if (sendToConsole) assertState(zeroed);
}

void MIDIOutputManager::ask(int cc, int value, Urgency urgency) {
    if (port.connectedDestinationID.value()) _pacer.ask(cc, value, urgency);
}

void MIDIOutputManager::pump() {
    const Uptime now = _clock.now();
    auto pause = 1ms;
    while (const auto message = _pacer.next(now)) {
        const std::uint32_t word =
            MIDIWords::controlChange(std::clamp(midiChannel.value(), 1, 16), message->cc, message->value);
        if (const MIDIStatus status = port.send({&word, 1})) {
            if (status != midiWouldBlock) pause = 50ms; // the port refuses: the value stays owed, retry slowly
            break;
        }
        _pacer.noteSent(now, *message);
    }
    isLoop = _pacer.echoes().isLoop();
    if (!_pacer.hasWaiting()) pause = _pacer.isSettled() ? 250ms : 5ms;
    if (!isBusy() && !_pacer.echoes().isWaiting())
        _timer.stop();
    else if (!_timer.isActive() || _timer.intervalAsDuration() != pause)
        _timer.start(pause);
}

} // namespace tessik
