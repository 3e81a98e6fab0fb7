#include "TessikAutomation/Desk/EchoWatch.h"

#include <algorithm>

namespace tessik {

namespace {
// The main thread may be busy this long while an echo waits to be handed to it.
constexpr Uptime patience = std::chrono::milliseconds(250);
} // namespace

void EchoWatch::noteSent(Uptime now, int cc, int value, Uptime landsAt) {
    giveUp(now);
    _onTheirWay.push_back({cc, value, now, landsAt});
}

bool EchoWatch::take(Uptime stamp, int cc, int value) {
    while (!_onTheirWay.empty() && _onTheirWay.front().landsAt + latest < stamp)
        fail();
    const auto found = std::find_if(_onTheirWay.begin(), _onTheirWay.end(), [&](const Sent& sent) {
        return sent.cc == cc && sent.value == value && sent.sentAt <= stamp;
    });
    if (found == _onTheirWay.end()) {
        _inARow = 0;
        return false;
    }
    // A desk that reads a fader when its cable is free reports only the last of several values.
    const auto later = found + 1;
    const auto gone = std::remove_if(_onTheirWay.begin(), later, [cc](const Sent& sent) { return sent.cc == cc; });
    _onTheirWay.erase(gone, later);
    if (++_inARow >= sendsToLoop) _isLoop = true;
    return true;
}

void EchoWatch::giveUp(Uptime now) {
    while (!_onTheirWay.empty() && _onTheirWay.front().landsAt + latest + patience < now)
        fail();
}

void EchoWatch::fail() {
    _onTheirWay.pop_front();
    _inARow = 0;
    _isLoop = false;
}

} // namespace tessik
