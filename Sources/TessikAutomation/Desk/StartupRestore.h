#pragma once

#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"

namespace tessik {

/// Selects the remembered ports, each only if listed at this moment, and sets the remembered channel. Call once, at
/// startup.
void restoreMIDIConnections(MIDIInputConnection& console, MIDIOutputManager& output, MIDIInputConnection& timecode,
                            TransportManager& transport);

/// Sets the remembered console size.
void restoreModelSize(ConsoleModel& consoleModel);

} // namespace tessik
