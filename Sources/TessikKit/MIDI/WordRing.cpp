#include "TessikKit/MIDI/WordRing.h"

#include <algorithm>

namespace tessik {

std::vector<WordRing::Entry> WordRing::since(std::int64_t& next) const {
    const std::int64_t end = count();
    const std::int64_t first = std::max({next, end - kept, std::int64_t(0)});
    std::vector<Entry> entries;
    entries.reserve(std::size_t(std::max<std::int64_t>(end - first, 0)));
    for (std::int64_t n = first; n < end; ++n) {
        const Slot& slot = _slots[std::size_t(n % size)];
        entries.push_back(
            {Uptime(slot.stamp.load(std::memory_order_acquire)), slot.word.load(std::memory_order_acquire)});
    }
    // What was overwritten meanwhile may be half of one word and half of another.
    const std::int64_t whole = _begun.load(std::memory_order_relaxed) - size;
    next = std::max(next, end);
    if (whole > first) entries.erase(entries.begin(), entries.begin() + std::min(whole - first, end - first));
    return entries;
}

} // namespace tessik
