#pragma once

#include "TessikAutomation/Views/Window/MainWindow.h"
#include "TessikKit/MIDI/MTCClock.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedConsole.h"
#include "TessikRig/SimulatedRecorder.h"

namespace tessik {

/// A desk and a recorder that stand in for real ones, with the cables to them.
struct Rig {
    VirtualMIDIService service;
    SimulatedConsole desk{service};
    SimulatedRecorder recorder{service};
};

/// Everything that lives for the whole run, made once and in this order, and the main window on it.
class Application {
public:
    /// `service` outlives the application.
    explicit Application(MIDIService& service);
    ~Application();

    ThemeStore theme;
    ConsoleModel consoleModel;
    MIDIOutputManager midiOutput;
    MIDIManager midiManager;
    DeskEditor deskEditor;
    MainWindow window;

    /// Chooses the ports that this machine remembers, where they are there.
    void restorePorts();
    /// Chooses the rig's ports, for this run only.
    void connectToRig();
    /// Offers the rig in place of MIDI that is not to be had, telling why.
    void offerRig(const QString& why, std::function<void()> accept);
    /// Puts the window on its screen, inset by 80 pixels on every side, and activates it.
    void showWindow();

private:
    QPropertyNotifier _dataLost;
};

} // namespace tessik
