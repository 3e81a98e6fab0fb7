#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tessik {

/// Builds and decodes the 32-bit words in which MIDI 1.0 messages travel (Universal MIDI Packet format, M2-104-UM:
/// message type in the top four bits, group 0 in the next four).
namespace MIDIWords {

/// A channel-voice word: `status` 0x80 to 0xEF.
constexpr std::uint32_t channelVoice(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    return 0x20000000u | std::uint32_t(status) << 16 | std::uint32_t(data1 & 0x7F) << 8 | (data2 & 0x7Fu);
}

/// A system common or real-time word: `status` 0xF1 to 0xFF.
constexpr std::uint32_t system(std::uint8_t status, std::uint8_t data1 = 0, std::uint8_t data2 = 0) {
    return 0x10000000u | std::uint32_t(status) << 16 | std::uint32_t(data1 & 0x7F) << 8 | (data2 & 0x7Fu);
}

constexpr std::uint32_t controlChange(int channelFrom1, int cc, int value) {
    return channelVoice(std::uint8_t(0xB0 | (channelFrom1 - 1)), std::uint8_t(cc), std::uint8_t(value));
}

/// Which part of a System Exclusive message a type-3 pair holds.
enum class SysExPart : std::uint8_t { complete = 0, start = 1, middle = 2, end = 3 };

/// One type-3 pair of up to six data bytes, appended to `words`.
void appendSysExPair(std::vector<std::uint32_t>& words, SysExPart part, std::span<const std::uint8_t> data);

/// A whole System Exclusive message as type-3 pairs, appended to `words`. `data` without F0 and F7.
void appendSysEx(std::vector<std::uint32_t>& words, std::span<const std::uint8_t> data);

/// The data bytes of a type-3 pair.
struct SysExBytes {
    std::array<std::uint8_t, 6> data;
    std::size_t count;

    constexpr SysExBytes(std::uint32_t first, std::uint32_t second)
        : data{std::uint8_t(first >> 8),   std::uint8_t(first),       std::uint8_t(second >> 24),
               std::uint8_t(second >> 16), std::uint8_t(second >> 8), std::uint8_t(second)},
          count(std::min<std::size_t>(first >> 16 & 0xF, data.size())) {}
    constexpr const std::uint8_t* begin() const { return data.data(); }
    constexpr const std::uint8_t* end() const { return data.data() + count; }
};

/// Appends to `bytes` one message as on a MIDI 1.0 cable, from a word of type 1 or 2; nothing for other types.
void appendBytes(std::vector<std::uint8_t>& bytes, std::uint32_t word);

} // namespace MIDIWords
} // namespace tessik
