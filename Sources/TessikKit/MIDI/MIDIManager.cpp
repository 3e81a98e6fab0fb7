#include "TessikKit/MIDI/MIDIManager.h"

#include <cstdio>

namespace tessik {

MIDIManager::MIDIManager(MIDIService& service, ConsoleModel& model, const QString& clientName)
    : consoleModel(model), connection(service, clientName, [this](const MIDIWord& word) { receive(word); }) {
    connection.setOvertakenHandler([this](std::int64_t count) { consoleModel.noteOvertaken(count); });
    connection.setTaskHandler([this](const MIDIWord& word) {
        if (!isNews || isNews(word.stamp, word.data1(), word.data2()))
            consoleModel.handle(word.stamp, word.data1(), word.data2());
    });
}

void MIDIManager::receive(const MIDIWord& word) {
    if (word.messageType() != 2 || (word.status() & 0xF0) != 0xB0) return;
    if (logIncomingCC) std::fprintf(stderr, "[CC IN] cc=%d value=%d\n", word.data1(), word.data2());
    connection.submit(word, word.data1());
}

} // namespace tessik
