#pragma once

#include "TessikAutomation/Automation/LaneEvent.h"
#include "TessikAutomation/Automation/PendingTake.h"

#include <deque>
#include <span>

namespace tessik {

/// Grows one take: in chunks that copies share, and only with what a stop of the tape cannot take back.
///
/// A stop is noticed half a second late, so a move waits here until timecode has told that the tape still rolled when
/// it was made. After its end the take can go on, with the moves made meanwhile, when the stop was none.
class TakeRecorder {
public:
    /// A new take, without chunks yet. `known` is what needs no event: the state that the take begins with.
    void begin(PendingTake take, const ControllerValues& known);

    /// A move that was made at an instant, not yet known to be in the take.
    void move(Uptime stamp, int cc, int value);
    /// Takes the moves in that were made up to `knownUntil`; `offsetAt(stamp)` tells their frame offsets.
    template <typename OffsetAt>
    void settle(Uptime knownUntil, OffsetAt offsetAt) {
        for (; !_moves.empty() && _moves.front().stamp <= knownUntil; _moves.pop_front())
            record(offsetAt(_moves.front().stamp), _moves.front().cc, _moves.front().value);
    }
    /// A value at a frame offset. One equal to the lane's last is no event; an offset is never negative, nor before the
    /// lane's last.
    void record(std::int64_t offset, int cc, int value);
    /// Whether the take, or a move that waits, has anything of a lane.
    bool has(int cc) const;
    /// Drops of some lanes everything from an offset on.
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
