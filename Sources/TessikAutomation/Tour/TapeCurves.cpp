#include "TessikAutomation/Tour/TapeCurves.h"

#include <algorithm>
#include <limits>

namespace tessik {

int TapeCurve::at(double frame) const {
    const auto after = std::upper_bound(_points.begin(), _points.end(), frame,
                                        [](double wanted, const auto& point) { return wanted < point.first; });
    return after == _points.begin() ? _points.front().second : std::prev(after)->second;
}

int TapeCurve::distance(int value, double from, double to) const {
    int low = at(from), high = low;
    for (const auto& [frame, held] : _points) {
        if (frame < from || frame > to) continue;
        low = std::min(low, held);
        high = std::max(high, held);
    }
    return std::max({0, low - value, value - high});
}

int deskValue(const SimulatedConsole& desk, int cc) {
    if (const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc)) return desk.vca(*kind);
    return MIDIChannelMapping::encodeSwitchByte(desk.switches(*MIDIChannelMapping::channelKindForSwitchCC(cc)));
}

DeskWatch::DeskWatch(Rig& rig, const std::vector<int>& controllers) : _rig(rig) {
    for (const int cc : controllers)
        _curves[cc].add(std::numeric_limits<double>::lowest(), _last[cc] = deskValue(rig.desk, cc));
    _listener = rig.desk.changed.connect([this] { look(); });
}

void DeskWatch::look() {
    const double frame = _rig.recorder.truePosition(UptimeClock::system().now());
    for (auto& [cc, last] : _last)
        if (const int value = deskValue(_rig.desk, cc); std::exchange(last, value) != value)
            _curves[cc].add(frame, value);
}

} // namespace tessik
