#include "TessikRig/MIDICable.h"

#include <algorithm>

namespace tessik {

void MIDICable::feed(Uptime at, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
        const auto stillInside =
            std::count_if(_inside.rbegin(), _inside.rend(), [at](const Byte& b) { return b.at > at; });
        if (std::size_t(stillInside) >= _bufferBytes) {
            ++_dropped;
            continue;
        }
        _busyUntil = std::max(_busyUntil, at) + byteTime;
        _inside.push_back({_busyUntil, byte});
    }
}

std::optional<MIDICable::Byte> MIDICable::take(Uptime now) {
    if (_inside.empty() || _inside.front().at > now) return std::nullopt;
    const Byte byte = _inside.front();
    _inside.pop_front();
    return byte;
}

std::optional<ChannelMessageParser::Message> ChannelMessageParser::feed(std::uint8_t byte) {
    if (byte >= 0xF8) return std::nullopt;
    if (byte >= 0x80) {
        _status = byte < 0xF0 ? byte : 0;
        _data1.reset();
        return std::nullopt;
    }
    if (_status == 0 || (_status & 0xE0) == 0xC0) return std::nullopt; // a desk ignores messages with one data byte
    if (!_data1) {
        _data1 = byte;
        return std::nullopt;
    }
    const Message message{_status, *_data1, byte};
    _data1.reset();
    return message;
}

} // namespace tessik
