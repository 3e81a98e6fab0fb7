#pragma once

#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include <utility>

namespace tessik {

/// A desk at the far end of virtual cables: "Desk Out" can be heard, "Desk In" records what it is sent.
struct FarDesk {
    explicit FarDesk(VirtualMIDIService& itsService) : service(itsService) {
        service.createClient(QStringLiteral("Far"), {}, client);
        service.createSource(client, QStringLiteral("Desk Out"), out);
        service.createDestination(
            client, QStringLiteral("Desk In"),
            [this](const MIDIEventList& list) {
                for (const MIDIEventPacket& packet : list.packets)
                    for (const std::uint32_t word : packet.words) {
                        lastStatus = int(word >> 16 & 0xFF);
                        received.emplace_back(int(word >> 8 & 0x7F), int(word & 0x7F));
                    }
            },
            in);
    }
    std::int32_t outID() const { return *service.sources().front().uniqueID; }
    std::int32_t inID() const { return *service.destinations().front().uniqueID; }

    VirtualMIDIService& service;
    MIDIClientRef client = 0;
    MIDIEndpointRef out = 0, in = 0;
    std::vector<std::pair<int, int>> received; ///< controller, value
    int lastStatus = 0;
};

} // namespace tessik
