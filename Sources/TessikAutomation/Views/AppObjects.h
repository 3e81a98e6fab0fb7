#pragma once

#include "TessikAutomation/MIDI/DeskEditor.h"
#include "TessikAutomation/Views/Theme/ThemeStore.h"
#include "TessikKit/MIDI/MIDIManager.h"

namespace tessik {

/// The shared objects that the main window works on. All outlive it.
struct AppObjects {
    ThemeStore& theme;
    ConsoleModel& consoleModel;
    MIDIManager& midiManager;
    MIDIOutputManager& midiOutput;
    DeskEditor& deskEditor;
};

} // namespace tessik
