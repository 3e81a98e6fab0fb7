#include "TessikAutomation/Automation/TakeRecorder.h"

#include <algorithm>

namespace tessik {

void TakeRecorder::begin(PendingTake take, const ControllerValues& known) {
    *this = {};
    _take = std::move(take);
    _last = known;
}

void TakeRecorder::move(Uptime stamp, int cc, int value) { _moves.push_back({stamp, cc, value}); }

void TakeRecorder::record(std::int64_t offset, int cc, int value) {
    const std::size_t lane = std::size_t(cc);
    if (_last[lane] == value) return;
    _last[lane] = value;
    _lastOffsets[lane] = std::max({std::int64_t(0), _lastOffsets[lane], offset});
    if (_take.chunks.isEmpty() || _take.chunks.constLast().size() == chunkSize) {
        _take.chunks.append(QList<TimedEvent>());
        _take.chunks.last().reserve(chunkSize);
    }
    _take.chunks.last().append(LaneEvent{_lastOffsets[lane], std::uint8_t(cc), std::uint8_t(value)}.timedEvent());
    ++_counts[lane];
    ++_eventCount;
}

bool TakeRecorder::has(int cc) const {
    return _counts[std::size_t(cc)] > 0 ||
           std::any_of(_moves.begin(), _moves.end(), [cc](const Move& move) { return move.cc == cc; });
}

void TakeRecorder::takeBack(std::int64_t fromOffset, std::span<const int> lanes) {
    const auto isTaken = [&](int cc) { return std::find(lanes.begin(), lanes.end(), cc) != lanes.end(); };
    std::erase_if(_moves, [&](const Move& move) { return isTaken(move.cc); });
    for (QList<TimedEvent>& chunk : _take.chunks) {
        chunk.removeIf([&](const TimedEvent& event) {
            const int cc = LaneEvent::of(event)->cc;
            if (event.frameOffset < fromOffset || !isTaken(cc)) return false;
            --_counts[std::size_t(cc)];
            --_eventCount;
            return true;
        });
    }
    for (const int cc : lanes) {
        _last[std::size_t(cc)].reset();
        _lastOffsets[std::size_t(cc)] = std::min(_lastOffsets[std::size_t(cc)], fromOffset);
    }
}

PendingTake TakeRecorder::takeAt(std::int64_t offset) const {
    PendingTake take = _take;
    if (take.rides)
        take.rides->end =
            std::max({std::int64_t(0), offset, *std::max_element(_lastOffsets.begin(), _lastOffsets.end())});
    return take;
}

} // namespace tessik
