#pragma once

#include "TessikKit/Models/UptimeClock.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace tessik {

/// One direction of a MIDI 1.0 cable: 31,250 baud, ten bits a byte (both from the MIDI 1.0 standard), with an input
/// buffer that drops what does not fit, like that of an old interface.
class MIDICable {
public:
    static constexpr Uptime byteTime = std::chrono::microseconds(320);

    explicit MIDICable(std::size_t bufferBytes) : _bufferBytes(bufferBytes) {}

    /// Bytes that arrive at the input at `at`; times never run backwards.
    void feed(Uptime at, std::span<const std::uint8_t> bytes);

    struct Byte {
        Uptime at; ///< when its last bit had passed
        std::uint8_t value;
    };
    /// The next byte that has passed by `now`.
    std::optional<Byte> take(Uptime now);

    bool isIdle() const { return _inside.empty(); }
    std::int64_t droppedBytes() const { return _dropped; }

private:
    const std::size_t _bufferBytes;
    std::deque<Byte> _inside;
    Uptime _busyUntil = distantPast;
    std::int64_t _dropped = 0;
};

/// Extracts three-byte channel messages from a cable's bytes: handles running status and interleaved real-time bytes,
/// and skips System Exclusive messages.
class ChannelMessageParser {
public:
    struct Message {
        std::uint8_t status;
        std::uint8_t data1;
        std::uint8_t data2;
    };
    std::optional<Message> feed(std::uint8_t byte);

private:
    std::uint8_t _status = 0; // 0: what follows belongs to no channel message
    std::optional<std::uint8_t> _data1;
};

} // namespace tessik
