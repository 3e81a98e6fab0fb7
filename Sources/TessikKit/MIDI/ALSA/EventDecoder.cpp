#include "TessikKit/MIDI/ALSA/EventDecoder.h"

#include "TessikKit/MIDI/MIDIWords.h"

#include <algorithm>
#include <array>

namespace tessik {

namespace {

constexpr bool isRealTime(std::uint8_t byte) { return byte >= 0xF8 && byte != 0xF9 && byte != 0xFD; }

} // namespace

void EventDecoder::decode(const snd_seq_event_t& event, std::vector<std::uint32_t>& words) {
    const snd_seq_ev_note_t& note = event.data.note;
    const snd_seq_ev_ctrl_t& control = event.data.control;
    constexpr unsigned most = 0x7F, most14 = 0x3FFF;
    const auto voice = [&](int kind, unsigned channel, unsigned data1, unsigned data2 = 0) {
        if (channel > 0xF || data1 > most || data2 > most) return;
        words.push_back(
            MIDIWords::channelVoice(std::uint8_t(kind | int(channel)), std::uint8_t(data1), std::uint8_t(data2)));
    };
    const auto controller = [&](unsigned number, unsigned value) { voice(0xB0, control.channel, number, value); };
    const auto system = [&](int status, unsigned data1 = 0, unsigned data2 = 0) {
        if (data1 > most || data2 > most) return;
        words.push_back(MIDIWords::system(std::uint8_t(status), std::uint8_t(data1), std::uint8_t(data2)));
    };
    const auto value = unsigned(control.value);

    switch (event.type) {
    case SND_SEQ_EVENT_NOTEOFF: return voice(0x80, note.channel, note.note, note.velocity);
    case SND_SEQ_EVENT_NOTEON: return voice(0x90, note.channel, note.note, note.velocity);
    case SND_SEQ_EVENT_KEYPRESS: return voice(0xA0, note.channel, note.note, note.velocity);
    case SND_SEQ_EVENT_CONTROLLER: return controller(control.param, value);
    case SND_SEQ_EVENT_PGMCHANGE: return voice(0xC0, control.channel, value);
    case SND_SEQ_EVENT_CHANPRESS: return voice(0xD0, control.channel, value);
    case SND_SEQ_EVENT_PITCHBEND: return voice(0xE0, control.channel, value & most, (value + 8192) >> 7);

    // A single event stands for several messages on a cable.
    case SND_SEQ_EVENT_CONTROL14:
        if (control.param >= 32) return controller(control.param, value);
        if (value > most14) return;
        controller(control.param, value >> 7);
        return controller(control.param + 32, value & most);
    case SND_SEQ_EVENT_NONREGPARAM:
    case SND_SEQ_EVENT_REGPARAM: {
        if (control.param > most14 || value > most14) return;
        const unsigned high = event.type == SND_SEQ_EVENT_NONREGPARAM ? 99 : 101;
        controller(high, control.param >> 7);
        controller(high - 1, control.param & most);
        controller(6, value >> 7);
        return controller(38, value & most);
    }

    case SND_SEQ_EVENT_QFRAME: return system(0xF1, value);
    case SND_SEQ_EVENT_SONGPOS: return system(0xF2, value & most, value >> 7);
    case SND_SEQ_EVENT_SONGSEL: return system(0xF3, value);
    case SND_SEQ_EVENT_TUNE_REQUEST: return system(0xF6);
    case SND_SEQ_EVENT_CLOCK: return system(0xF8);
    case SND_SEQ_EVENT_START: return system(0xFA);
    case SND_SEQ_EVENT_CONTINUE: return system(0xFB);
    case SND_SEQ_EVENT_STOP: return system(0xFC);
    case SND_SEQ_EVENT_SENSING: return system(0xFE);
    case SND_SEQ_EVENT_RESET: return system(0xFF);
    case SND_SEQ_EVENT_SYSEX:
        return decodeSysEx(event.source, {static_cast<const std::uint8_t*>(event.data.ext.ptr), event.data.ext.len},
                           words);
    default: return;
    }
}

void EventDecoder::decodeSysEx(snd_seq_addr_t sender, std::span<const std::uint8_t> bytes,
                               std::vector<std::uint32_t>& words) {
    using MIDIWords::SysExPart;
    std::array<std::uint8_t, 6> data{};
    std::size_t count = 0;
    const auto flush = [&](SysExPart part) {
        MIDIWords::appendSysExPair(words, part, std::span(data).first(count));
        count = 0;
        _startSent = true;
    };
    const auto goOn = [&] { flush(_startSent ? SysExPart::middle : SysExPart::start); };
    const auto isUnderWay = [&] { return _sender && _sender->client == sender.client && _sender->port == sender.port; };

    for (const std::uint8_t byte : bytes) {
        if (byte >= 0xF8) {
            if (isRealTime(byte)) words.push_back(MIDIWords::system(byte));
        } else if (byte == 0xF0) {
            _sender = sender;
            _startSent = false;
            count = 0;
        } else if (!isUnderWay()) {
            continue;
        } else if (byte < 0x80) {
            if (count == data.size()) goOn();
            data[count++] = byte;
        } else {
            if (byte == 0xF7) flush(_startSent ? SysExPart::end : SysExPart::complete);
            count = 0;
            _sender.reset();
        }
    }
    if (count > 0) goOn();
}

std::span<const std::uint32_t> nextPacket(std::span<const std::uint32_t> words) {
    std::size_t length = 0;
    while (length < words.size()) {
        const std::size_t step = words[length] >> 28 == 3 ? 2 : 1;
        if (length + step > maxPacketWords) break;
        length += step;
    }
    return words.first(std::min(length, words.size()));
}

} // namespace tessik
