#include "TessikKit/MIDI/MTCDecoder.h"

namespace tessik {

std::optional<TimecodePosition> MTCDecoder::handleQuarterFrame(std::uint8_t dataByte) {
    const int piece = dataByte >> 4 & 7;
    if (piece != expectedNextPiece && piece != 0) {
        expectedNextPiece = 0;
        return std::nullopt;
    }
    pieces[std::size_t(piece)] = dataByte & 0xF;
    expectedNextPiece = (piece + 1) & 7;
    if (piece != 7) return std::nullopt;

    // The high pieces are masked to the bits that the format defines.
    TimecodePosition position{.frameRate = MTCFrameRate(pieces[7] >> 1 & 3),
                              .hours = pieces[6] | (pieces[7] & 1) << 4,
                              .minutes = pieces[4] | (pieces[5] & 3) << 4,
                              .seconds = pieces[2] | (pieces[3] & 3) << 4,
                              .frames = pieces[0] | (pieces[1] & 1) << 4};
    position.addFrames(2);
    return position;
}

std::optional<std::uint32_t> MTCDecoder::fullFrameBytes(std::span<const std::uint8_t> sysEx) {
    if (sysEx.size() < 8 || sysEx[0] != 0x7F || sysEx[2] != 0x01 || sysEx[3] != 0x01) return std::nullopt;
    return std::uint32_t(sysEx[4]) << 24 | std::uint32_t(sysEx[5]) << 16 | std::uint32_t(sysEx[6]) << 8 | sysEx[7];
}

TimecodePosition MTCDecoder::fullFramePosition(std::uint32_t fullFrameBytes) {
    return {.frameRate = MTCFrameRate(fullFrameBytes >> 29 & 3),
            .hours = fullFrameBytes >> 24 & 0x1F,
            .minutes = fullFrameBytes >> 16 & 0x7F,
            .seconds = fullFrameBytes >> 8 & 0x7F,
            .frames = fullFrameBytes & 0x7F};
}

} // namespace tessik
