#include "TessikKit/MIDI/ALSA/EventEncoder.h"

#include "TessikKit/MIDI/MIDIWords.h"

#include <algorithm>
#include <array>

namespace tessik {

namespace {

/// False if there is no event for the word.
bool encodeVoice(std::uint32_t word, snd_seq_event_t& event) {
    const auto channel = std::uint8_t(word >> 16 & 0xF);
    const auto data1 = std::uint8_t(word >> 8 & 0x7F);
    const auto data2 = std::uint8_t(word & 0x7F);
    switch (word >> 20 & 0xF) {
    case 0x8: snd_seq_ev_set_noteoff(&event, channel, data1, data2); return true;
    case 0x9: snd_seq_ev_set_noteon(&event, channel, data1, data2); return true;
    case 0xA: snd_seq_ev_set_keypress(&event, channel, data1, data2); return true;
    case 0xB: snd_seq_ev_set_controller(&event, channel, data1, data2); return true;
    case 0xC: snd_seq_ev_set_pgmchange(&event, channel, data1); return true;
    case 0xD: snd_seq_ev_set_chanpress(&event, channel, data1); return true;
    case 0xE: snd_seq_ev_set_pitchbend(&event, channel, (data2 << 7 | data1) - 8192); return true;
    default: return false;
    }
}

bool encodeSystem(std::uint32_t word, snd_seq_event_t& event) {
    const int data1 = int(word >> 8 & 0x7F);
    snd_seq_ev_set_fixed(&event);
    switch (word >> 16 & 0xFF) {
    case 0xF1: event.type = SND_SEQ_EVENT_QFRAME, event.data.control.value = data1; return true;
    case 0xF2:
        event.type = SND_SEQ_EVENT_SONGPOS;
        event.data.control.value = int(word & 0x7F) << 7 | data1;
        return true;
    case 0xF3: event.type = SND_SEQ_EVENT_SONGSEL, event.data.control.value = data1; return true;
    case 0xF6: event.type = SND_SEQ_EVENT_TUNE_REQUEST; return true;
    case 0xF8: event.type = SND_SEQ_EVENT_CLOCK; return true;
    case 0xFA: event.type = SND_SEQ_EVENT_START; return true;
    case 0xFB: event.type = SND_SEQ_EVENT_CONTINUE; return true;
    case 0xFC: event.type = SND_SEQ_EVENT_STOP; return true;
    case 0xFE: event.type = SND_SEQ_EVENT_SENSING; return true;
    case 0xFF: event.type = SND_SEQ_EVENT_RESET; return true;
    default: return false;
    }
}

int outputSysEx(std::vector<std::uint8_t>& message, const std::function<int(snd_seq_event_t&)>& output) {
    for (std::size_t at = 0; at < message.size(); at += sysExChunkBytes) {
        const std::size_t length = std::min(sysExChunkBytes, message.size() - at);
        snd_seq_event_t event{};
        snd_seq_ev_set_sysex(&event, unsigned(length), message.data() + at);
        if (const int result = output(event); result < 0) return result;
    }
    return 0;
}

} // namespace

MIDIStatus encodeEvents(std::span<const std::uint32_t> words, const std::function<int(snd_seq_event_t&)>& output) {
    using MIDIWords::SysExPart;
    std::vector<std::uint8_t> message; // from F0; empty between messages
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::uint32_t word = words[i];
        if (word >> 28 == 3) {
            if (i + 1 == words.size()) return -EINVAL;
            const auto part = SysExPart(word >> 20 & 0xF);
            const bool begins = part == SysExPart::start || part == SysExPart::complete;
            if (part > SysExPart::end || begins != message.empty()) return -EINVAL;
            if (begins) message.push_back(0xF0);
            const MIDIWords::SysExBytes bytes(word, words[++i]);
            message.insert(message.end(), bytes.begin(), bytes.end());
            if (part != SysExPart::end && part != SysExPart::complete) continue;
            message.push_back(0xF7);
            if (const int result = outputSysEx(message, output); result < 0) return result;
            message.clear();
            continue;
        }
        snd_seq_event_t event{};
        const bool makesEvent = word >> 28 == 2   ? encodeVoice(word, event)
                                : word >> 28 == 1 ? encodeSystem(word, event)
                                                  : false;
        if (!makesEvent) continue;
        if (const int result = output(event); result < 0) return result;
    }
    return message.empty() ? 0 : -EINVAL;
}

} // namespace tessik
