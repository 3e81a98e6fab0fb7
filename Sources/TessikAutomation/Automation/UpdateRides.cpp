#include "TessikAutomation/Automation/UpdateRides.h"

#include <algorithm>

namespace tessik {

using namespace std::chrono_literals;

namespace {
constexpr Uptime remembered = 500ms;
}

int UpdateRides::output(int cc, int automation) const {
    const Ride& ride = _rides[std::size_t(cc)];
    if (ride.inPlace) return *ride.inPlace;
    if (cc < MIDIChannelMapping::switchCCOffset) return std::clamp(automation + ride.trim, 0, 127);
    return (automation & ~ride.heldBits) | ride.held;
}

void UpdateRides::moveBy(Uptime stamp, int faderCC, int difference) {
    change(stamp, faderCC).trim += difference;
    release(faderCC);
}

void UpdateRides::setOutput(Uptime stamp, int faderCC, int value, int automation) {
    change(stamp, faderCC).trim = value - automation;
    release(faderCC);
}

void UpdateRides::press(Uptime stamp, int switchCC, int before, int now) {
    Ride& ride = change(stamp, switchCC);
    ride.heldBits |= before ^ now;
    ride.held = (ride.held & ~(before ^ now)) | (now & (before ^ now));
    if (ride.inPlace) ride.inPlace = now;
}

void UpdateRides::replace(Uptime stamp, int cc, int value) { change(stamp, cc).inPlace = value; }

std::vector<int> UpdateRides::takeBackSince(Uptime stamp) {
    std::vector<int> lanes;
    for (; !_undos.empty() && _undos.back().stamp >= stamp; _undos.pop_back()) {
        const Undo& undo = _undos.back();
        _rides[std::size_t(undo.cc)] = undo.before;
        if (std::find(lanes.begin(), lanes.end(), undo.cc) == lanes.end()) lanes.push_back(undo.cc);
    }
    return lanes;
}

UpdateRides::Ride& UpdateRides::change(Uptime stamp, int cc) {
    while (!_undos.empty() && _undos.front().stamp < stamp - remembered)
        _undos.pop_front();
    _undos.push_back({stamp, cc, _rides[std::size_t(cc)]});
    return _rides[std::size_t(cc)];
}

} // namespace tessik
