#pragma once

#include "TessikKit/MIDI/MIDIService.h"

#include <alsa/asoundlib.h>

namespace tessik {

/// System Exclusive goes to the sequencer in chunks of this many bytes: what drivers take in one piece.
inline constexpr std::size_t sysExChunkBytes = 256;

/// Hands `output` the events that whole messages of 32-bit words make, in order; System Exclusive framed by F0 and F7.
/// The events have neither address nor queue yet, and what they point to lives as long as the call. Ends with the first
/// negative result of `output` and returns it, -EINVAL for a System Exclusive message that lacks its start or end,
/// else 0. Words of other types than 1 to 3 are left out.
MIDIStatus encodeEvents(std::span<const std::uint32_t> words, const std::function<int(snd_seq_event_t&)>& output);

} // namespace tessik
