#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"
#include "TessikAutomation/Automation/LaneEvent.h"

#include <algorithm>
#include <span>
#include <vector>

namespace tessik {

/// The events of a pass, lane by lane, so that the state at any offset is found by binary search, at a cost that hardly
/// grows with the pass. Events of channels that do not exist are left out.
class PassIndex {
public:
    PassIndex() = default;
    /// Ordered by offset, whatever the order in the list; events of one frame keep the list's order.
    explicit PassIndex(const QList<TimedEvent>& events);

    std::span<const LaneEvent> events() const { return _events; }
    /// The events of one controller.
    struct Lane {
        std::vector<std::int64_t> offsets; // separate from the values: a search reads nothing else
        std::vector<std::uint8_t> values;
    };
    const Lane& lane(int cc) const { return _lanes[std::size_t(cc)]; }
    /// At least 0, and small enough to calculate with, whatever a file says.
    std::int64_t lastOffset() const {
        return _events.empty() ? 0
                               : std::clamp<std::int64_t>(_events.back().frameOffset, 0, TimecodePosition::farthest);
    }
    /// Position in `events` of the first one after that offset.
    std::size_t firstAfter(std::int64_t offset) const;
    /// Overwrites `values` with each lane's last event at or before that offset; lanes without one are left as they
    /// are.
    void applyUpTo(std::int64_t offset, ControllerValues& values) const;

private:
    std::vector<LaneEvent> _events;
    std::array<Lane, MIDIChannelMapping::controllerCount> _lanes;
};

/// Follows a pass through its index: holds the value of every lane at the offset reached.
class PassCursor {
public:
    explicit PassCursor(const PassIndex& index) : _index(index) {}

    /// Goes to an offset, on top of the state with which the pass starts.
    void seek(const ControllerValues& baseline, std::int64_t offset);
    /// Advances to a later offset and calls `visit(const LaneEvent&)` for each event on the way, in order.
    template <typename Visit>
    void advance(std::int64_t offset, Visit visit) {
        const std::span<const LaneEvent> events = _index.events();
        for (; _next < events.size() && events[_next].frameOffset <= offset; ++_next) {
            const LaneEvent& event = events[_next];
            _values[event.cc] = event.value;
            visit(event);
        }
    }
    /// None for a lane that neither the pass's start nor an event has set yet.
    const ControllerValues& values() const { return _values; }

private:
    const PassIndex& _index;
    std::size_t _next = 0; // the first event not yet passed
    ControllerValues _values;
};

} // namespace tessik
