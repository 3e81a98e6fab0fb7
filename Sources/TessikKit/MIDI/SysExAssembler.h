#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessik {

/// Assembles System Exclusive messages from type-3 word pairs.
class SysExAssembler {
public:
    /// Longer messages are dropped.
    static constexpr std::size_t maxBytes = 64 * 1024;

    /// Takes one pair. Returns the data bytes of the message that it completes, without F0 and F7, valid until the next
    /// call; none if it completes none.
    std::optional<std::span<const std::uint8_t>> take(std::uint32_t first, std::uint32_t second);
    /// Forgets an unfinished message.
    void reset() { _gathered.clear(); }
    /// Messages dropped for their length.
    std::int64_t droppedCount() const { return _dropped; }

private:
    std::array<std::uint8_t, 6> _pair{};
    std::vector<std::uint8_t> _gathered;
    std::vector<std::uint8_t> _whole;
    bool _tooLong = false;
    std::int64_t _dropped = 0;
};

} // namespace tessik
