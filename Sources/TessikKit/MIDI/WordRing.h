#pragma once

#include "TessikKit/Models/UptimeClock.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

namespace tessik {

/// The last words that passed a port, without locks or memory of their own. One thread records, another may read.
class WordRing {
public:
    struct Entry {
        Uptime stamp;
        std::uint32_t word;
    };
    static constexpr std::int64_t kept = 1000;

    void record(Uptime stamp, std::uint32_t word) {
        const std::int64_t n = _count.load(std::memory_order_relaxed);
        Slot& slot = _slots[std::size_t(n % size)];
        _begun.store(n + 1, std::memory_order_relaxed);
        // Released one by one: a reader that sees any of the new slot sees also that the old one is going.
        slot.stamp.store(stamp.count(), std::memory_order_release);
        slot.word.store(word, std::memory_order_release);
        _count.store(n + 1, std::memory_order_release);
    }

    /// How many were ever recorded.
    std::int64_t count() const { return _count.load(std::memory_order_acquire); }
    /// Of the `kept` last ones, those from the `next`th on, counted from 0; oldest first. Moves `next` behind them.
    std::vector<Entry> since(std::int64_t& next) const;

private:
    static constexpr std::int64_t size = 1024; // more than kept: recording goes on while somebody reads
    struct Slot {
        std::atomic<Uptime::rep> stamp = 0;
        std::atomic<std::uint32_t> word = 0;
    };

    std::array<Slot, size> _slots{};
    std::atomic<std::int64_t> _begun = 0;
    std::atomic<std::int64_t> _count = 0;
};

} // namespace tessik
