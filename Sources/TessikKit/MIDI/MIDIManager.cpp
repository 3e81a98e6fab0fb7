#include "TessikKit/MIDI/MIDIManager.h"

#include <cstdio>

namespace tessik {

MIDIManager::MIDIManager(MIDIService& service, ConsoleModel& model, const QString& clientName)
    : consoleModel(model), connection(service, clientName, [this](const MIDIWord& word) { receive(word); }) {
    connection.setOvertakenHandler([this](std::int64_t count) { consoleModel.noteOvertaken(count); });
    connection.setTaskHandler([this](Uptime stamp, std::uint64_t payload) {
        const int cc = int(payload >> 8);
        const int value = int(payload & 0xFF);
        if (!onControlChange || onControlChange(stamp, cc, value)) consoleModel.handle(stamp, cc, value);
    });
}

void MIDIManager::receive(const MIDIWord& word) {
    if (word.messageType != 2 || (word.status & 0xF0) != 0xB0) return;
    if (logIncomingCC) std::fprintf(stderr, "[CC IN] cc=%d value=%d\n", word.data1, word.data2);
    connection.submit(word.stamp, std::uint64_t(word.data1) << 8 | std::uint64_t(word.data2), word.data1);
}

} // namespace tessik
