#pragma once

#include <alsa/asoundlib.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessik {

/// Turns the sequencer's events, as one port receives them, into 32-bit words.
///
/// System Exclusive arrives whole from programs and in chunks of 256 bytes from hardware; either way it becomes a run
/// of type-3 pairs. A chunk that continues no message of its sender is dropped, and so is a message cut short by
/// another status byte.
class EventDecoder {
public:
    /// Appends the words for the event; none if no MIDI cable carries such an event, because of its kind or of numbers
    /// out of range.
    void decode(const snd_seq_event_t& event, std::vector<std::uint32_t>& words);
    /// Forgets an unfinished message: events were lost.
    void reset() { _sender.reset(); }

private:
    void decodeSysEx(snd_seq_addr_t sender, std::span<const std::uint8_t> bytes, std::vector<std::uint32_t>& words);

    std::optional<snd_seq_addr_t> _sender; // of the unfinished System Exclusive message
    bool _startSent = false;               // of that message
};

/// The most words in one packet: receivers ignore any more.
inline constexpr std::size_t maxPacketWords = 64;

/// The first words that make one packet: as many as fit without splitting a System Exclusive pair.
std::span<const std::uint32_t> nextPacket(std::span<const std::uint32_t> words);

} // namespace tessik
