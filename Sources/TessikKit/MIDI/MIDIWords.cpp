#include "TessikKit/MIDI/MIDIWords.h"

namespace tessik::MIDIWords {

void appendSysExPair(std::vector<std::uint32_t>& words, SysExPart part, std::span<const std::uint8_t> data) {
    std::array<std::uint32_t, 6> d{};
    const std::size_t count = std::min(data.size(), d.size());
    std::copy_n(data.begin(), count, d.begin());
    words.push_back(0x30000000u | std::uint32_t(part) << 20 | std::uint32_t(count) << 16 | d[0] << 8 | d[1]);
    words.push_back(d[2] << 24 | d[3] << 16 | d[4] << 8 | d[5]);
}

void appendSysEx(std::vector<std::uint32_t>& words, std::span<const std::uint8_t> data) {
    if (data.size() <= 6) return appendSysExPair(words, SysExPart::complete, data);
    for (std::size_t at = 0; at < data.size(); at += 6) {
        const std::span<const std::uint8_t> rest = data.subspan(at);
        const SysExPart part = at == 0 ? SysExPart::start : rest.size() <= 6 ? SysExPart::end : SysExPart::middle;
        appendSysExPair(words, part, rest.first(std::min<std::size_t>(6, rest.size())));
    }
}

void appendBytes(std::vector<std::uint8_t>& bytes, std::uint32_t word) {
    const std::uint8_t status = word >> 16 & 0xFF;
    int dataBytes = 0;
    switch (word >> 28) {
    case 1: dataBytes = status == 0xF2 ? 2 : status == 0xF1 || status == 0xF3 ? 1 : 0; break;
    case 2: dataBytes = (status & 0xE0) == 0xC0 ? 1 : 2; break;
    default: return;
    }
    bytes.push_back(status);
    if (dataBytes > 0) bytes.push_back(word >> 8 & 0x7F);
    if (dataBytes > 1) bytes.push_back(word & 0x7F);
}

} // namespace tessik::MIDIWords
