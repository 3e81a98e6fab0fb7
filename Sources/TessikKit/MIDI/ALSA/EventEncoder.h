#pragma once

#include "TessikKit/MIDI/MIDIService.h"

#include <alsa/asoundlib.h>

namespace tessik {

/// System Exclusive goes to the sequencer in chunks of this many bytes: as much as drivers take at once.
inline constexpr std::size_t sysExChunkBytes = 256;

/// Passes the events for whole messages of 32-bit words to `output`, in order; System Exclusive is framed by F0 and F7.
/// The events have neither address nor queue yet, and what they point to lives only as long as the call. Stops at the
/// first negative result of `output` and returns it, or -EINVAL for a System Exclusive message without its start or
/// end, else 0. Skips words of types other than 1 to 3.
MIDIStatus encodeEvents(std::span<const std::uint32_t> words, const std::function<int(snd_seq_event_t&)>& output);

} // namespace tessik
