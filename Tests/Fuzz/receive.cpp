// The way in, from the sequencer's events and from raw words to the model and the believed desk: whatever arrives is
// survived, nothing is kept beyond its bounds, and what is counted is what came.
#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikKit/MIDI/ALSA/EventDecoder.h"
#include "TessikKit/MIDI/ALSA/EventEncoder.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include <QCoreApplication>

#include <fuzzer/FuzzedDataProvider.h>

using namespace tessik;

namespace {

using Words = std::vector<std::uint32_t>;

void require(bool holds) {
    if (!holds) __builtin_trap();
}

/// A manager on a virtual cable, and beside it a plain count of what it must have seen.
class Desk {
public:
    Desk() {
        MIDIClientRef client = 0;
        require(_service.createClient(QStringLiteral("Desk"), {}, client) == 0);
        require(_service.createSource(client, QStringLiteral("Out"), _source) == 0);
        _manager.connection.setSysExHandler(
            [](Uptime, std::span<const std::uint8_t> bytes) { require(bytes.size() <= SysExAssembler::maxBytes); });
        MIDIEndpointRef destination = 0;
        require(_service.createDestination(
                    client, QStringLiteral("In"), [](const MIDIEventList&) {}, destination) == 0);
        _output.setupClient();
        _output.refreshDestinations();
        _output.selectDestination(_output.port.availableDestinations.value().at(0).uniqueID);
        _manager.connection.refreshSources();
        _manager.connection.selectSource(_manager.connection.availableSources.value().at(0).uniqueID);
    }

    void receive(const Words& words) {
        const MIDIEventPacket packet{Uptime(0), words};
        _service.inject(_source, {.packets = {&packet, 1}});
        _bytes += 4 * std::int64_t(words.size());
        ++_lists;
        const std::size_t taken = std::min(words.size(), MIDIInputConnection::maxPacketWords);
        for (std::size_t i = 0; i < taken; ++i) {
            _controlChanges += words[i] >> 28 == 2 && (words[i] >> 20 & 0xF) == 0xB;
            i += words[i] >> 28 == 3;
        }
    }

    void lose() {
        _service.inject(_source, {.packets = {}, .dataLost = true});
        ++_losses;
    }

    void check() {
        const MIDIInputConnection& connection = _manager.connection;
        while (connection.rawPacketListCount.value() < _lists || connection.dataLostCount.value() < _losses)
            QCoreApplication::processEvents();
        require(connection.rawPacketListCount.value() == _lists);
        require(connection.rawByteCount.value() == _bytes);
        require(connection.dataLostCount.value() == _losses);
        require(connection.lastRawHex().size() <= qsizetype(9 * MIDIInputConnection::maxPacketWords));
        require(_model.messageCount.value() == _controlChanges);
    }

private:
    VirtualMIDIService _service{VirtualMIDIService::Delivery::synchronous};
    DeskLink _link{_service, QStringLiteral("Fuzz")};
    ConsoleModel& _model = _link.model;
    MIDIManager& _manager = _link.input;
    MIDIOutputManager& _output = _link.output;
    MIDIEndpointRef _source = 0;
    std::int64_t _lists = 0;
    std::int64_t _bytes = 0;
    std::int64_t _losses = 0;
    std::int64_t _controlChanges = 0;
};

/// An event as another client of the sequencer may make it: any type, any value, System Exclusive of any bytes.
void decodeEvent(FuzzedDataProvider& input, EventDecoder& decoder, Words& words) {
    snd_seq_event_t event{};
    event.source = {std::uint8_t(128 + input.ConsumeIntegralInRange(0, 1)), 0};
    std::vector<std::uint8_t> data;
    if (input.ConsumeBool()) {
        data = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 300));
        if (!data.empty() && input.ConsumeBool()) data.front() = 0xF0;
        if (!data.empty() && input.ConsumeBool()) data.back() = 0xF7;
        snd_seq_ev_set_sysex(&event, unsigned(data.size()), data.data());
    } else {
        event.type = input.ConsumeIntegral<std::uint8_t>();
        if (event.type == SND_SEQ_EVENT_SYSEX) return;
        input.ConsumeData(&event.data, sizeof event.data);
    }
    decoder.decode(event, words);
}

/// What the decoder makes are well-formed words of the three types, with pairs whole and data bytes of seven bits.
void checkDecoded(const Words& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::uint32_t type = words[i] >> 28;
        require(type >= 1 && type <= 3);
        if (type < 3) {
            require((words[i] & 0x8080) == 0);
            continue;
        }
        require(i + 1 < words.size());
        const MIDIWords::SysExBytes bytes(words[i], words[i + 1]);
        for (const std::uint8_t byte : bytes)
            require(byte < 0x80);
        ++i;
    }
    encodeEvents(words, [](snd_seq_event_t& event) {
        require(event.type != SND_SEQ_EVENT_SYSEX || event.data.ext.len <= sysExChunkBytes);
        return 0;
    });
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider input(bytes, size);
    Desk desk;
    EventDecoder decoder;
    while (input.remaining_bytes() > 0) {
        switch (input.ConsumeIntegralInRange(0, 3)) {
        case 0: { // a packet of any words
            Words words(input.ConsumeIntegralInRange<std::size_t>(0, 70));
            for (std::uint32_t& word : words)
                word = input.ConsumeIntegral<std::uint32_t>();
            desk.receive(words);
            break;
        }
        case 1: { // one pair over and over: System Exclusive without an end
            Words words;
            const auto first = 0x30000000u | input.ConsumeIntegral<std::uint32_t>() >> 4;
            for (int i = 0; i < 32; ++i)
                words.insert(words.end(), {first, 0x01020304u});
            for (int left = 32 * input.ConsumeIntegralInRange(0, 15); left > 0; --left)
                desk.receive(words);
            break;
        }
        case 2: { // events of the sequencer
            Words words;
            for (int left = input.ConsumeIntegralInRange(1, 8); left > 0; --left)
                decodeEvent(input, decoder, words);
            checkDecoded(words);
            for (std::span<const std::uint32_t> rest = words; !rest.empty();) {
                const auto packet = nextPacket(rest);
                require(!packet.empty() && packet.size() <= maxPacketWords);
                desk.receive({packet.begin(), packet.end()});
                rest = rest.subspan(packet.size());
            }
            break;
        }
        default: decoder.reset(); desk.lose();
        }
    }
    desk.check();
    return 0;
}
