#include "TessikKit/MIDI/SysExAssembler.h"

#include "TessikKit/MIDI/MIDIWords.h"

#include <utility>

namespace tessik {

std::optional<std::span<const std::uint8_t>> SysExAssembler::take(std::uint32_t first, std::uint32_t second) {
    using MIDIWords::SysExPart;
    const MIDIWords::SysExBytes pair(first, second);
    _pair = pair.data;
    const auto bytes = std::span(_pair).first(pair.count);
    const std::uint32_t part = first >> 20 & 0xF;
    if (part == std::uint32_t(SysExPart::complete)) return bytes;
    if (part > std::uint32_t(SysExPart::end)) return std::nullopt;
    if (part == std::uint32_t(SysExPart::start)) {
        _gathered.clear();
        _tooLong = false;
    }
    if (!_tooLong && _gathered.size() + bytes.size() > maxBytes) {
        _tooLong = true;
        ++_dropped;
        _gathered = {};
    }
    if (!_tooLong) _gathered.insert(_gathered.end(), bytes.begin(), bytes.end());
    if (part != std::uint32_t(SysExPart::end)) return std::nullopt;
    _whole = std::exchange(_gathered, {});
    if (std::exchange(_tooLong, false)) return std::nullopt;
    return _whole;
}

} // namespace tessik
