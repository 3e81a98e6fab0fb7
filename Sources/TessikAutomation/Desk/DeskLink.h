#pragma once

#include "TessikAutomation/Desk/DeskEditor.h"
#include "TessikKit/MIDI/MIDIManager.h"

namespace tessik {

/// The console as the program knows it, and both cables to it.
///
/// What comes in goes first to the output, which knows what it sent and so what is news, and then to the model. Lost
/// input makes the output doubt what it believes of the desk. Main thread only.
class DeskLink {
public:
    /// `inputClientName` names the MIDI client of the cable from the desk.
    DeskLink(MIDIService& service, const QString& inputClientName, const UptimeClock& clock = UptimeClock::system());

    ConsoleModel model;
    MIDIOutputManager output; ///< to be set up by its owner
    MIDIManager input;
    DeskEditor editor;
};

} // namespace tessik
