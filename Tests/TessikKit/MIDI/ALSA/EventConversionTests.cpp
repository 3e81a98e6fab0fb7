#include "Support/CountingBytes.h"
#include "TessikKit/MIDI/ALSA/EventDecoder.h"
#include "TessikKit/MIDI/ALSA/EventEncoder.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace tessik {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint32_t>;

snd_seq_event_t sysEx(Bytes& chunk, std::uint8_t fromClient = 20) {
    snd_seq_event_t event{};
    snd_seq_ev_set_sysex(&event, unsigned(chunk.size()), chunk.data());
    event.source = {fromClient, 0};
    return event;
}

/// What arrives when these chunks come in one after the other.
Words decoded(std::vector<Bytes> chunks) {
    EventDecoder decoder;
    Words words;
    for (Bytes& chunk : chunks)
        decoder.decode(sysEx(chunk), words);
    return words;
}

/// Data bytes of the messages that words make, as a receiver puts them together.
std::vector<Bytes> messagesOf(const Words& words) {
    std::vector<Bytes> messages;
    Bytes data;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] >> 28 != 3) continue;
        const std::uint32_t part = words[i] >> 20 & 0xF;
        if (part <= 1) data.clear();
        const MIDIWords::SysExBytes bytes(words[i], words[i + 1]);
        data.insert(data.end(), bytes.begin(), bytes.end());
        ++i;
        if (part == 0 || part == 3) messages.push_back(data);
    }
    return messages;
}

} // namespace

TEST(EventConversion, everyShortMessageGoesOutAndComesBackAsItWas) {
    std::vector<std::uint8_t> statuses{0xF1, 0xF2, 0xF3, 0xF6, 0xF8, 0xFA, 0xFB, 0xFC, 0xFE, 0xFF};
    for (int status = 0x80; status < 0xF0; ++status)
        statuses.push_back(std::uint8_t(status));
    Words sent;
    for (const std::uint8_t status : statuses)
        for (const int data1 : {0, 1, 64, 127})
            for (const int data2 : {0, 1, 64, 127}) {
                // Data bytes only where the message has them.
                Bytes bytes;
                const std::uint32_t type = status < 0xF0 ? 2 : 1;
                const std::uint32_t word = type << 28 | std::uint32_t(status) << 16;
                MIDIWords::appendBytes(bytes, word);
                sent.push_back(word | (bytes.size() > 1 ? std::uint32_t(data1) << 8 : 0) |
                               (bytes.size() > 2 ? std::uint32_t(data2) : 0));
            }
    EventDecoder decoder;
    Words received;
    EXPECT_EQ(encodeEvents(sent,
                           [&](snd_seq_event_t& event) {
                               decoder.decode(event, received);
                               return 0;
                           }),
              0);
    EXPECT_EQ(received, sent);
}

TEST(EventConversion, eventsThatStandForSeveralMessages) {
    const auto decode = [](int type, unsigned param, int value) {
        snd_seq_event_t event{};
        event.type = snd_seq_event_type_t(type);
        event.data.control = {.channel = 2, .unused = {}, .param = param, .value = value};
        Words words;
        EventDecoder().decode(event, words);
        return words;
    };
    const auto cc = [](int number, int value) { return MIDIWords::controlChange(3, number, value); };
    EXPECT_THAT(decode(SND_SEQ_EVENT_CONTROL14, 7, 100 << 7 | 5), ElementsAre(cc(7, 100), cc(39, 5)));
    EXPECT_THAT(decode(SND_SEQ_EVENT_CONTROL14, 64, 5), ElementsAre(cc(64, 5)));
    EXPECT_THAT(decode(SND_SEQ_EVENT_NONREGPARAM, 3 << 7 | 4, 1 << 7 | 2),
                ElementsAre(cc(99, 3), cc(98, 4), cc(6, 1), cc(38, 2)));
    EXPECT_THAT(decode(SND_SEQ_EVENT_REGPARAM, 0, 2 << 7), ElementsAre(cc(101, 0), cc(100, 0), cc(6, 2), cc(38, 0)));
    EXPECT_THAT(decode(SND_SEQ_EVENT_PORT_SUBSCRIBED, 1, 1), IsEmpty());

    // Numbers that no cable carries are not folded into others.
    for (const int type : {SND_SEQ_EVENT_CONTROLLER, SND_SEQ_EVENT_CONTROL14, SND_SEQ_EVENT_NONREGPARAM,
                           SND_SEQ_EVENT_REGPARAM, SND_SEQ_EVENT_PGMCHANGE, SND_SEQ_EVENT_CHANPRESS,
                           SND_SEQ_EVENT_PITCHBEND, SND_SEQ_EVENT_QFRAME, SND_SEQ_EVENT_SONGPOS, SND_SEQ_EVENT_SONGSEL})
        for (const int value : {1 << 20 | 3, -8193, INT_MAX, INT_MIN})
            EXPECT_THAT(decode(type, 7, value), IsEmpty()) << type << " " << value;
    EXPECT_THAT(decode(SND_SEQ_EVENT_CONTROLLER, 7, 128), IsEmpty());
    EXPECT_THAT(decode(SND_SEQ_EVENT_CONTROLLER, 128, 3), IsEmpty());
    EXPECT_THAT(decode(SND_SEQ_EVENT_CONTROL14, 128, 3), IsEmpty());
    EXPECT_THAT(decode(SND_SEQ_EVENT_REGPARAM, 1 << 14, 3), IsEmpty());
    snd_seq_event_t note{};
    note.type = SND_SEQ_EVENT_NOTEON;
    for (const snd_seq_ev_note_t& data : {snd_seq_ev_note_t{.channel = 16, .note = 1, .velocity = 1},
                                          snd_seq_ev_note_t{.channel = 1, .note = 128, .velocity = 1},
                                          snd_seq_ev_note_t{.channel = 1, .note = 1, .velocity = 200}}) {
        note.data.note = data;
        Words words;
        EventDecoder().decode(note, words);
        EXPECT_THAT(words, IsEmpty());
    }
}

TEST(EventConversion, sysExArrivesWholeHoweverItIsChunked) {
    std::mt19937 random(7);
    for (const std::size_t length : {0, 1, 5, 6, 7, 12, 13, 253, 254, 255, 256, 1000}) {
        const Bytes data = countingBytes(length);
        Bytes message{0xF0};
        message.insert(message.end(), data.begin(), data.end());
        message.push_back(0xF7);
        // Whole; as hardware chunks it; each byte alone; and at random.
        for (const std::size_t piece : {message.size(), std::size_t(256), std::size_t(1), std::size_t(0)}) {
            std::vector<Bytes> chunks;
            for (std::size_t at = 0; at < message.size();) {
                const std::size_t step = std::min(piece ? piece : 1 + random() % 40, message.size() - at);
                chunks.emplace_back(message.begin() + std::ptrdiff_t(at), message.begin() + std::ptrdiff_t(at + step));
                at += step;
            }
            EXPECT_THAT(messagesOf(decoded(chunks)), ElementsAre(data)) << length << " bytes by " << piece;
        }
    }
}

TEST(EventConversion, brokenSysEx) {
    const struct {
        const char* what;
        std::vector<Bytes> chunks;
        std::vector<Bytes> messages;
    } cases[] = {
        {"a tail without a start", {{1, 2, 0xF7}, {0xF0, 3, 0xF7}}, {{3}}},
        {"a new start ends the old message", {{0xF0, 1, 2}, {0xF0, 3, 0xF7}}, {{3}}},
        {"another status ends it", {{0xF0, 1, 0x90, 2, 0xF7}, {0xF0, 3, 0xF7}}, {{3}}},
        {"two in one event", {{0xF0, 1, 0xF7, 0xF0, 2, 0xF7}}, {{1}, {2}}},
        {"the end alone", {{0xF0, 1, 2, 3, 4, 5, 6}, {0xF7}}, {{1, 2, 3, 4, 5, 6}}},
        {"the start alone", {{0xF0}, {1, 0xF7}}, {{1}}},
        {"an empty event", {{0xF0, 1}, {}, {2, 0xF7}}, {{1, 2}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(messagesOf(decoded(c.chunks)), c.messages) << c.what;

    EXPECT_THAT(decoded({{0xF0, 1, 0xF8, 2, 0xF9, 0xF7}}),
                ElementsAre(0x10F80000u, 0x30020102u, 0u)); // a clock overtakes; an undefined byte is nothing
}

TEST(EventConversion, messagesOfTwoSendersDoNotMix) {
    EventDecoder decoder;
    Words words;
    Bytes begun{0xF0, 1, 2}, whole{0xF0, 9, 0xF7}, rest{3, 0xF7};
    decoder.decode(sysEx(begun, 20), words);
    decoder.decode(sysEx(rest, 21), words); // nobody's: dropped
    decoder.decode(sysEx(rest, 20), words);
    decoder.decode(sysEx(begun, 20), words);
    decoder.decode(sysEx(whole, 21), words);
    decoder.decode(sysEx(rest, 20), words); // its start was overtaken
    EXPECT_THAT(messagesOf(words), ElementsAre(Bytes{1, 2, 3}, Bytes{9}));

    decoder.decode(sysEx(begun, 20), words);
    decoder.reset();
    decoder.decode(sysEx(rest, 20), words);
    EXPECT_EQ(messagesOf(words).size(), 2u);
}

TEST(EventConversion, packetsHoldAllWordsAndPartNoPair) {
    Words words{0x20B00701u};
    MIDIWords::appendSysEx(words, countingBytes(1000));
    words.insert(words.end(), 100, 0x20B00702u);
    Words joined;
    for (std::span<const std::uint32_t> rest = words; !rest.empty();) {
        const auto packet = nextPacket(rest);
        ASSERT_FALSE(packet.empty());
        ASSERT_LE(packet.size(), maxPacketWords);
        std::size_t at = 0;
        while (at < packet.size())
            at += packet[at] >> 28 == 3 ? 2 : 1;
        EXPECT_EQ(at, packet.size());
        joined.insert(joined.end(), packet.begin(), packet.end());
        rest = rest.subspan(packet.size());
    }
    EXPECT_EQ(joined, words);
    EXPECT_EQ(nextPacket(Words{0x30160102u}).size(), 1u); // half a pair still makes progress
}

TEST(EventConversion, sendingEndsAtTheFirstRefusalAndTakesNoHalfMessages) {
    int sent = 0;
    const auto refuseThird = [&](snd_seq_event_t&) { return ++sent == 3 ? -EAGAIN : 0; };
    EXPECT_EQ(encodeEvents(Words(5, 0x20B00701u), refuseThird), midiWouldBlock);
    EXPECT_EQ(sent, 3);

    const auto count = [&](snd_seq_event_t&) { return ++sent; };
    sent = 0;
    for (const Words& words : {Words{0x30160102u, 0x03040506u},       // no end
                               Words{0x30360102u, 0x03040506u},       // no start
                               Words{0x30060102u},                    // half a pair
                               Words{0x30160102u, 0, 0x30160102u, 0}, // begun twice
                               Words{0x30460102u, 0}})                // no such part
        EXPECT_EQ(encodeEvents(words, count), -EINVAL);
    EXPECT_EQ(sent, 0);
    EXPECT_EQ(encodeEvents(Words{0x00000000u, 0x40000000u, 0x20000000u, 0x10F40000u, 0xF0000000u}, count), 0);
    EXPECT_EQ(sent, 0);
}

} // namespace tessik
