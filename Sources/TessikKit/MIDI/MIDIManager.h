#pragma once

#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/Models/ConsoleModel.h"

#include <atomic>

namespace tessik {

/// Receives from the console: passes its Control Changes, on any MIDI channel, to the model on the main thread.
class MIDIManager {
public:
    MIDIManager(MIDIService& service, ConsoleModel& consoleModel, const QString& clientName);

    ConsoleModel& consoleModel;
    MIDIInputConnection connection;

    /// Asked on the main thread about each Control Change, just before the model gets it; false keeps it from the
    /// model.
    std::function<bool(Uptime stamp, int cc, int value)> isNews;

    /// Writes every Control Change to standard error as it arrives. Process-wide.
    static inline std::atomic<bool> logIncomingCC = false;

private:
    void receive(const MIDIWord& word); // MIDI thread
};

} // namespace tessik
