#include "TessikAutomation/Automation/PassLanes.h"

namespace tessik {
namespace {

/// The switches that differ between these bytes, which begin with `start` if known.
ChannelSwitches changing(const std::vector<std::uint8_t>& bytes, std::optional<int> start) {
    if (bytes.empty()) return {};
    std::uint8_t changed = 0;
    const auto first = std::uint8_t(start.value_or(bytes.front()));
    for (const std::uint8_t byte : bytes)
        changed |= byte ^ first;
    return MIDIChannelMapping::decodeSwitchByte(std::uint8_t(~changed)); // where a clear bit means yes
}

} // namespace

PassLanes::PassLanes(const AutomationPass& pass) : _index(pass.events) {
    if (pass.initialState) _start = laneValues(*pass.initialState);
    for (int cc = 0; cc < MIDIChannelMapping::switchCCOffset; ++cc) {
        const std::optional<ChannelKind> kind = MIDIChannelMapping::channelKindForFaderCC(cc);
        if (!kind) continue;
        const int switchCC = cc + MIDIChannelMapping::switchCCOffset;
        const PassIndex::Lane &fader = _index.lane(cc), &switches = _index.lane(switchCC);
        const std::size_t events = fader.values.size() + switches.values.size();
        if (events == 0) continue;
        _channels.push_back({.kind = *kind,
                             .fader = !fader.values.empty(),
                             .switches = changing(switches.values, _start[std::size_t(switchCC)]),
                             .events = qsizetype(events)});
        for (const PassIndex::Lane* lane : {&fader, &switches})
            if (!lane->offsets.empty())
                _lastOffset = std::clamp(lane->offsets.back(), _lastOffset, TimecodePosition::farthest);
    }
}

std::size_t PassLanes::firstAtOrAfter(const PassIndex::Lane& lane, double offset) {
    const auto isBefore = [](std::int64_t event, double wanted) { return double(event) < wanted; };
    return std::size_t(std::lower_bound(lane.offsets.begin(), lane.offsets.end(), offset, isBefore) -
                       lane.offsets.begin());
}

std::optional<int> PassLanes::valueAt(int cc, std::int64_t offset) const {
    const PassIndex::Lane& lane = _index.lane(cc);
    const std::size_t next = firstAtOrAfter(lane, double(offset) + 1);
    return next > 0 ? std::optional<int>(lane.values[next - 1]) : _start[std::size_t(cc)];
}

} // namespace tessik
