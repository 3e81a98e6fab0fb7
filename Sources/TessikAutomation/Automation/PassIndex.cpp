#include "TessikAutomation/Automation/PassIndex.h"

namespace tessik {

PassIndex::PassIndex(const QList<TimedEvent>& events) {
    _events.reserve(std::size_t(events.size()));
    for (const TimedEvent& event : events)
        if (const std::optional<LaneEvent> laneEvent = LaneEvent::of(event)) _events.push_back(*laneEvent);
    const auto isEarlier = [](const LaneEvent& a, const LaneEvent& b) { return a.frameOffset < b.frameOffset; };
    if (!std::is_sorted(_events.begin(), _events.end(), isEarlier))
        std::stable_sort(_events.begin(), _events.end(), isEarlier);
    for (const LaneEvent& event : _events) {
        _lanes[event.cc].offsets.push_back(event.frameOffset);
        _lanes[event.cc].values.push_back(event.value);
    }
}

std::size_t PassIndex::firstAfter(std::int64_t offset) const {
    const auto isBefore = [](std::int64_t wanted, const LaneEvent& event) { return wanted < event.frameOffset; };
    return std::size_t(std::upper_bound(_events.begin(), _events.end(), offset, isBefore) - _events.begin());
}

void PassIndex::applyUpTo(std::int64_t offset, ControllerValues& values) const {
    for (std::size_t cc = 0; cc < _lanes.size(); ++cc) {
        const std::vector<std::int64_t>& offsets = _lanes[cc].offsets;
        const auto after = std::upper_bound(offsets.begin(), offsets.end(), offset);
        if (after != offsets.begin()) values[cc] = _lanes[cc].values[std::size_t(after - offsets.begin()) - 1];
    }
}

void PassCursor::seek(const ControllerValues& baseline, std::int64_t offset) {
    _values = baseline;
    _index.applyUpTo(offset, _values);
    _next = _index.firstAfter(offset);
}

} // namespace tessik
