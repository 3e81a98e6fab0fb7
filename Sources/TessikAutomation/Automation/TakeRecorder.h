#pragma once

#include "TessikAutomation/Automation/LaneEvent.h"
#include "TessikAutomation/Automation/PendingTake.h"

#include <deque>
#include <span>

namespace tessik {

/// Grows one take, in chunks that copies share, and only by what a stop of the tape can no longer take back.
///
/// A stop is noticed half a second late, so a move waits here until timecode shows that the tape was still rolling when
/// it was made. A take that has ended can go on, with the moves made meanwhile, if the stop proves to be a dropout.
class TakeRecorder {
public:
    /// Begins a new take, without chunks yet. `known` needs no events: it is the state in which the take begins.
    void begin(PendingTake take, const ControllerValues& known);

    /// Takes a move made at an instant; it is not yet certain that it belongs to the take.
    void move(Uptime stamp, int cc, int value);
    /// Records the moves made up to `knownUntil`; `offsetAt(stamp)` gives their frame offsets.
    template <typename OffsetAt>
    void settle(Uptime knownUntil, OffsetAt offsetAt) {
        for (; !_moves.empty() && _moves.front().stamp <= knownUntil; _moves.pop_front())
            record(offsetAt(_moves.front().stamp), _moves.front().cc, _moves.front().value);
    }
    /// Records a value at a frame offset. A value equal to the lane's last is not an event; an offset is never
    /// negative, nor before the lane's last.
    void record(std::int64_t offset, int cc, int value);
    /// Whether the take, or a move still waiting, concerns a lane.
    bool has(int cc) const;
    /// Drops everything of some lanes from an offset on.
    void takeBack(std::int64_t fromOffset, std::span<const int> lanes);

    qsizetype eventCount() const { return _eventCount; }
    /// The take as it stands, up to an offset.
    PendingTake takeAt(std::int64_t offset) const;

private:
    struct Move {
        Uptime stamp;
        int cc;
        int value;
    };

    static constexpr qsizetype chunkSize = 4096;

    PendingTake _take;
    qsizetype _eventCount = 0;
    std::deque<Move> _moves;
    ControllerValues _last; // of each lane
    std::array<std::int64_t, MIDIChannelMapping::controllerCount> _lastOffsets{};
    std::array<int, MIDIChannelMapping::controllerCount> _counts{}; // events
};

} // namespace tessik
