#pragma once

#include "TessikKit/Models/TimecodePosition.h"

#include <array>
#include <span>

namespace tessik {

/// Assembles the eight quarter-frame pieces of a position. Only a run in ascending order completes one, so reverse play
/// yields none.
struct MTCDecoder {
    std::array<std::uint8_t, 8> pieces{}; ///< the four bits last received for each piece
    int expectedNextPiece = 0;            ///< 0 to 7

    /// Takes the data byte of a quarter frame. Returns a position with the piece that completes a run: the label
    /// carried, which by then is two frames old, plus two frames.
    std::optional<TimecodePosition> handleQuarterFrame(std::uint8_t dataByte);

    /// The four bytes that give the position in a full-frame message, hours on top; none for any other message. `sysEx`
    /// begins after F0.
    static std::optional<std::uint32_t> fullFrameBytes(std::span<const std::uint8_t> sysEx);
    static TimecodePosition fullFramePosition(std::uint32_t fullFrameBytes);

    friend bool operator==(const MTCDecoder&, const MTCDecoder&) = default;
};

} // namespace tessik
