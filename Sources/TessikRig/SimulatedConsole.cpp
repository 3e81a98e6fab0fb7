#include "TessikRig/SimulatedConsole.h"

#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <algorithm>
#include <random>

namespace tessik {

using namespace std::chrono_literals;

SimulatedConsole::SimulatedConsole(MIDIService& service, const UptimeClock& clock, int inputCount)
    : _service(service), _clock(clock), _received([this](Received& received) {
          std::vector<std::uint8_t> bytes;
          MIDIWords::appendBytes(bytes, received.word);
          _in.feed(received.stamp, bytes);
          keepTime();
      }) {
    for (int n = 1; n <= inputCount; ++n)
        _channels.push_back({ChannelKind::input(n)});
    for (int n = 1; n <= groupCount; ++n)
        _channels.push_back({ChannelKind::group(n)});
    _channels.push_back({ChannelKind::stereo()});
    makeFactoryScenes();

    _timer.setTimerType(Qt::PreciseTimer);
    _timer.setInterval(1ms);
    _timer.callOnTimeout([this] { advance(); });

    const auto receive = [this](const MIDIEventList& list) {
        for (const MIDIEventPacket& packet : list.packets)
            for (std::size_t i = 0; i < packet.words.size(); ++i) {
                if (packet.words[i] >> 28 == 3)
                    ++i; // a desk ignores System Exclusive, and its second word is not a message
                else
                    _received.push({packet.stamp, packet.words[i]});
            }
    };
    _status = service.createClient(portName(), {}, _client);
    if (_status == 0) _status = service.createSource(_client, portName(), _source);
    if (_status == 0) _status = service.createDestination(_client, portName(), receive, _destination);
}

SimulatedConsole::~SimulatedConsole() { _service.disposeClient(_client); }

// A rough mix in the first memory, and variations of it: something to look at, identical at every start.
void SimulatedConsole::makeFactoryScenes() {
    std::minstd_rand random(41);
    const auto upTo = [&random](int n) { return int(random() % std::uint32_t(n)); };
    for (std::vector<Stored>& scene : _scenes) {
        for (const Channel& channel : _channels) {
            const bool isInput = channel.kind.kind() == ChannelKind::Case::input;
            const int fader = isInput ? 62 + upTo(50) : 100 + upTo(10);
            scene.push_back({upTo(16) == 0 && isInput ? 0 : fader,
                             {.monMuted = isInput && upTo(7) == 0,
                              .auxMuted = isInput && upTo(9) == 0,
                              .eqOn = isInput && upTo(3) != 0,
                              .chanMuted = isInput && upTo(8) == 0}});
        }
    }
}

SimulatedConsole::Channel* SimulatedConsole::find(ChannelKind kind) {
    const auto found = std::find_if(_channels.begin(), _channels.end(),
                                    [kind](const Channel& channel) { return channel.kind == kind; });
    return found == _channels.end() ? nullptr : &*found;
}

const SimulatedConsole::Channel& SimulatedConsole::get(ChannelKind kind) const {
    return *const_cast<SimulatedConsole*>(this)->find(kind);
}

std::vector<ChannelKind> SimulatedConsole::channels() const {
    std::vector<ChannelKind> kinds;
    for (const Channel& channel : _channels)
        kinds.push_back(channel.kind);
    return kinds;
}

int SimulatedConsole::physicalFader(ChannelKind kind) const { return get(kind).physical; }
int SimulatedConsole::vca(ChannelKind kind) const { return get(kind).vca; }
ChannelSwitches SimulatedConsole::switches(ChannelKind kind) const { return get(kind).switches; }

void SimulatedConsole::moveFader(ChannelKind kind, int value) {
    Channel* channel = find(kind);
    if (!channel || channel->physical == value) return;
    advance();
    channel->physical = channel->vca = value;
    tell(_clock.now(), MIDIChannelMapping::faderCC(kind));
    changed();
}

void SimulatedConsole::setSwitches(ChannelKind kind, ChannelSwitches switches) {
    Channel* channel = find(kind);
    if (!channel || channel->switches == switches) return;
    advance();
    channel->switches = switches;
    tell(_clock.now(), MIDIChannelMapping::switchCC(kind));
    changed();
}

void SimulatedConsole::recallScene(int scene) {
    advance();
    for (std::size_t i = 0; i < _channels.size(); ++i) {
        Channel& channel = _channels[i];
        const Stored& stored = _scenes[std::size_t(scene)][i];
        channel.vca = stored.fader;
        channel.switches = stored.switches;
        tell(_clock.now(), MIDIChannelMapping::faderCC(channel.kind));
        tell(_clock.now(), MIDIChannelMapping::switchCC(channel.kind));
    }
    changed();
}

void SimulatedConsole::storeScene(int scene) {
    std::vector<Stored>& stored = _scenes[std::size_t(scene)];
    for (std::size_t i = 0; i < _channels.size(); ++i)
        stored[i] = {_channels[i].vca, _channels[i].switches};
}

void SimulatedConsole::tell(Uptime at, int cc) {
    if (std::find(_toTell.begin(), _toTell.end(), cc) == _toTell.end()) _toTell.push_back(cc);
    if (!_sending) startNextMessage(at);
    keepTime();
}

void SimulatedConsole::startNextMessage(Uptime at) {
    _sending.reset();
    if (_toTell.empty()) return;
    const int cc = _toTell.front();
    _toTell.pop_front();
    _sending = {cc, currentValue(cc), at + 3 * MIDICable::byteTime};
}

int SimulatedConsole::currentValue(int cc) const {
    if (const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc)) return vca(*kind);
    return MIDIChannelMapping::encodeSwitchByte(switches(*MIDIChannelMapping::channelKindForSwitchCC(cc)));
}

void SimulatedConsole::advance() {
    const Uptime now = _clock.now();
    while (true) { // whichever happens first on either cable
        const bool isSendingDone = _sending && _sending->doneAt <= now;
        if (const auto byte = _in.take(isSendingDone ? _sending->doneAt : now)) {
            if (const auto message = _parser.feed(byte->value)) obey(byte->at, *message);
        } else if (isSendingDone) {
            const Sending sent = *_sending;
            startNextMessage(sent.doneAt);
            const std::uint32_t word = MIDIWords::controlChange(_basicChannel, sent.cc, sent.value);
            if (!_isLost) _service.transmit(_source, {&word, 1});
        } else {
            break;
        }
    }
    keepTime();
}

void SimulatedConsole::obey(Uptime at, const ChannelMessageParser::Message& message) {
    if (message.status != (0xB0 | (_basicChannel - 1))) return;
    const int cc = message.data1;
    if (const auto faderKind = MIDIChannelMapping::channelKindForFaderCC(cc)) {
        Channel* channel = find(*faderKind);
        if (!channel) return;
        channel->vca = message.data2;
        vcaMoved(at, channel->kind, channel->vca);
    } else if (const auto switchKind = MIDIChannelMapping::channelKindForSwitchCC(cc)) {
        Channel* channel = find(*switchKind);
        if (!channel) return;
        channel->switches = MIDIChannelMapping::decodeSwitchByte(message.data2);
    } else {
        return;
    }
    if (_isEchoing) tell(at, cc);
    changed();
}

void SimulatedConsole::keepTime() {
    if (isQuiet())
        _timer.stop();
    else if (!_timer.isActive())
        _timer.start();
}

} // namespace tessik
