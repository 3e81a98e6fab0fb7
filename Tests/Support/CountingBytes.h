#pragma once

#include <cstdint>
#include <vector>

namespace tessik {

/// Data bytes of a System Exclusive message: 0, 1, 2 … 127, 0 …
inline std::vector<std::uint8_t> countingBytes(std::size_t length) {
    std::vector<std::uint8_t> bytes(length);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = std::uint8_t(i & 0x7F);
    return bytes;
}

} // namespace tessik
