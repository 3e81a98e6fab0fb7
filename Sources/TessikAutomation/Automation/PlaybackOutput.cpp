#include "TessikAutomation/Automation/PlaybackOutput.h"

#include <utility>

namespace tessik {

using namespace std::chrono_literals;

namespace {
// Both ways over the cables, plus twenty faders in between that the desk must also report.
constexpr Uptime echoWindow = 25ms;
} // namespace

ChannelState* PlaybackOutput::visibleChannel(int cc) const {
    ChannelState* channel = _consoleModel.channelOf(cc);
    return channel && _consoleModel.isVisible(*channel) ? channel : nullptr;
}

bool PlaybackOutput::isEcho(const ConsoleChange& change) const {
    const std::size_t lane = std::size_t(change.cc);
    return change.origin == ChangeOrigin::desk && _last[lane] == change.value &&
           change.stamp < _sentAt[lane] + echoWindow;
}

std::optional<int> PlaybackOutput::noteChange(const ConsoleChange& change) {
    return std::exchange(_last[std::size_t(change.cc)], change.value);
}

void PlaybackOutput::play(int cc, int value, MIDIOutputManager::Urgency urgency) {
    if (!visibleChannel(cc)) return;
    _last[std::size_t(cc)] = value;
    _sentAt[std::size_t(cc)] = _clock.now();
    _desk.send(cc, value, urgency);
    show(cc, value);
}

void PlaybackOutput::putBack(int cc, int value) {
    if (_last[std::size_t(cc)] == value)
        show(cc, value);
    else
        play(cc, value, MIDIOutputManager::Urgency::correction);
}

void PlaybackOutput::assertState(const ControllerValues& values) {
    ControllerValues shown;
    for (std::size_t cc = 0; cc < values.size(); ++cc) {
        if (!values[cc] || !visibleChannel(int(cc))) continue;
        shown[cc] = _last[cc] = values[cc];
        _sentAt[cc] = _clock.now();
        show(int(cc), *values[cc]);
    }
    _desk.assertState(shown);
}

void PlaybackOutput::show(int cc, int value) {
    if (visibleChannel(cc)) _consoleModel.played(cc, value, _isScreenHeld);
}

void PlaybackOutput::releaseScreen() {
    if (!std::exchange(_isScreenHeld, false)) return;
    for (const ChannelState* channel : _consoleModel.allVisibleChannels()) {
        const int cc = MIDIChannelMapping::faderCC(channel->kind);
        if (const std::optional<int> last = _last[std::size_t(cc)]) _consoleModel.shown(cc, *last);
    }
}

} // namespace tessik
