#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"
#include "TessikAutomation/Automation/PassIndex.h"

#include <algorithm>

namespace tessik {

/// A pass prepared for drawing: which channels move in it, and what each was over any stretch.
class PassLanes {
public:
    explicit PassLanes(const AutomationPass& pass);

    struct Channel {
        ChannelKind kind;
        bool fader;               ///< has moves
        ChannelSwitches switches; ///< those that change
        qsizetype events;
    };
    /// In the desk's order, only those with events.
    const std::vector<Channel>& channels() const { return _channels; }
    /// Of all events; at least 0, and small enough to calculate with.
    std::int64_t lastOffset() const { return _lastOffset; }

    /// A controller's values over a stretch of the pass.
    struct Extent {
        std::uint8_t low, high;
        std::uint8_t common; ///< the bits that were set throughout; of a switch byte, what was off throughout
        friend bool operator==(const Extent&, const Extent&) = default;
    };
    /// Goes through `columns` stretches of `framesPerColumn` each, starting at an offset, and calls `visit(column,
    /// Extent)` for each in which anything is known. Looks at each event once.
    template <typename Visit>
    void visitColumns(int cc, double from, double framesPerColumn, int columns, Visit visit) const {
        const PassIndex::Lane& lane = _index.lane(cc);
        std::size_t next = firstAtOrAfter(lane, from);
        int held = next > 0 ? lane.values[next - 1] : _start[std::size_t(cc)].value_or(unknown);
        for (int column = 0; column < columns; ++column) {
            const double end = from + (column + 1) * framesPerColumn;
            Extent extent{0xFF, 0, 0xFF};
            const auto add = [&extent](std::uint8_t value) {
                extent.low = std::min(extent.low, value);
                extent.high = std::max(extent.high, value);
                extent.common &= value;
            };
            if (held != unknown) add(std::uint8_t(held));
            for (; next < lane.offsets.size() && double(lane.offsets[next]) < end; ++next)
                add(lane.values[next]);
            if (next > 0) held = lane.values[next - 1];
            if (extent.low <= extent.high) visit(column, extent);
        }
    }
    /// None if nothing is known yet.
    std::optional<int> valueAt(int cc, std::int64_t offset) const;

private:
    static constexpr int unknown = -1;
    static std::size_t firstAtOrAfter(const PassIndex::Lane& lane, double offset);

    PassIndex _index;
    ControllerValues _start;
    std::vector<Channel> _channels;
    std::int64_t _lastOffset = 0;
};

} // namespace tessik
