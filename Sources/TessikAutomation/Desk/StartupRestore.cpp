#include "TessikAutomation/Desk/StartupRestore.h"

#include "TessikAutomation/MIDI/PortChoice.h"

#include <limits>

namespace tessik {

void restoreMIDIConnections(MIDIInputConnection& console, MIDIOutputManager& output, MIDIInputConnection& timecode,
                            TransportManager& transport) {
    sourceChoice(SavedSettings::Key::consoleSourceID, console).restore();
    destinationChoice(SavedSettings::Key::midiOutDestinationID, output.port).restore();
    sourceChoice(SavedSettings::Key::timecodeSourceID, timecode).restore();
    destinationChoice(SavedSettings::Key::transportDestinationID, transport.port).restore();
    using Limits = std::numeric_limits<int>;
    if (const std::optional<std::int64_t> channel = SavedSettings::midiChannel())
        output.midiChannel = int(std::clamp<std::int64_t>(*channel, Limits::min(), Limits::max()));
}

void restoreModelSize(ConsoleModel& consoleModel) {
    if (const auto size = SavedSettings::modelSize()) consoleModel.modelSize = *size;
}

} // namespace tessik
