#include "TessikAutomation/Automation/PendingTake.h"

#include "TessikAutomation/Automation/LaneEvent.h"

namespace tessik {
namespace {

/// The rides of a take, lane by lane.
struct RiddenLanes {
    std::array<std::optional<std::int64_t>, MIDIChannelMapping::controllerCount> touchedAt;
    ControllerValues last;

    explicit RiddenLanes(const QList<QList<TimedEvent>>& chunks) {
        for (const QList<TimedEvent>& chunk : chunks)
            for (const TimedEvent& event : chunk)
                if (const auto ride = LaneEvent::of(event)) {
                    if (!touchedAt[ride->cc]) touchedAt[ride->cc] = ride->frameOffset;
                    last[ride->cc] = ride->value;
                }
    }
};

/// The pass with its ridden lanes replaced for the length of the ride, and restored at its end.
QList<TimedEvent> merged(const PendingTake& take) {
    const RiddenLanes ridden(take.chunks);
    ControllerValues old = laneValues(take.rides->baseline); // at the end
    QList<TimedEvent> events;
    events.reserve(take.eventCount());
    for (const TimedEvent& event : take.pass.events) {
        const auto lane = LaneEvent::of(event);
        const bool isBeforeEnd = event.frameOffset <= take.rides->end;
        if (lane && isBeforeEnd) old[lane->cc] = lane->value;
        const bool isReplaced =
            lane && isBeforeEnd && ridden.touchedAt[lane->cc] && event.frameOffset >= *ridden.touchedAt[lane->cc];
        if (!isReplaced) events.append(event);
    }
    for (const QList<TimedEvent>& chunk : take.chunks)
        events += chunk;
    for (std::size_t cc = 0; cc < old.size(); ++cc)
        if (ridden.last[cc] && old[cc] && ridden.last[cc] != old[cc])
            events.append(LaneEvent{take.rides->end, std::uint8_t(cc), std::uint8_t(*old[cc])}.timedEvent());
    return events;
}

} // namespace

qsizetype PendingTake::eventCount() const {
    qsizetype count = pass.events.size();
    for (const QList<TimedEvent>& chunk : chunks)
        count += chunk.size();
    return count;
}

AutomationPass PendingTake::finished() const {
    AutomationPass whole = pass;
    if (rides)
        whole.events = merged(*this);
    else
        for (const QList<TimedEvent>& chunk : chunks)
            whole.events += chunk;
    whole.sortEvents();
    return whole;
}

} // namespace tessik
