#pragma once

#include <alsa/asoundlib.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessik {

/// Turns the sequencer's events, as one port receives them, into 32-bit words.
///
/// System Exclusive comes whole from programs and in chunks of 256 bytes from hardware; either way it becomes a run of
/// type-3 pairs. A chunk that continues no message of its sender is dropped, and so is a message cut short by another
/// status byte.
class EventDecoder {
public:
    /// Appends the words that the event makes, none for events that no MIDI cable carries, be it for their kind or for
    /// numbers out of range.
    void decode(const snd_seq_event_t& event, std::vector<std::uint32_t>& words);
    /// Forgets a message begun: events were lost.
    void reset() { _sender.reset(); }

private:
    void decodeSysEx(snd_seq_addr_t sender, std::span<const std::uint8_t> bytes, std::vector<std::uint32_t>& words);

    std::optional<snd_seq_addr_t> _sender; // of the System Exclusive message under way
    bool _startSent = false;               // of that message
};

/// The most words of one packet: receivers take no more from it.
inline constexpr std::size_t maxPacketWords = 64;

/// The front of `words` that makes one packet: as many as fit without parting a System Exclusive pair.
std::span<const std::uint32_t> nextPacket(std::span<const std::uint32_t> words);

} // namespace tessik
