#pragma once

#include "TessikAutomation/Application/PassFiles.h"
#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Session/Problems.h"
#include "TessikAutomation/Session/SessionController.h"
#include "TessikAutomation/Snapshots/SnapshotRecall.h"
#include "TessikAutomation/Views/Session/WidgetSessionDialogs.h"
#include "TessikAutomation/Views/Window/MainWindow.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedConsole.h"
#include "TessikRig/SimulatedRecorder.h"

namespace tessik {

class HelpMenu;
class MIDIMonitorView;

/// A desk and a recorder that stand in for real ones, with their cables.
struct Rig {
    VirtualMIDIService service;
    SimulatedConsole desk{service};
    SimulatedRecorder recorder{service};
};

/// Everything that lives for the whole run, created once and in this order, and the main window.
class Application {
public:
    /// `service` must outlive the application. `recoveryRoot` is the folder of recovery files.
    Application(MIDIService& service, const QString& recoveryRoot);
    ~Application();

    ThemeStore theme;
    DeskLink desk;
    MTCClock mtcClock;
    SnapshotStore snapshots;
    PassStore passes;
    ManualSettingsStore manualSettings;
    ChannelLabelStore channelLabels;
    MasterSectionStore masterSection;
    LocatorStore locators;
    PassEngine passEngine;
    TransportManager transport;
    SnapshotRecall snapshotRecall;
    MainWindow window;
    WidgetSessionDialogs dialogs;
    SessionController session;
    ProblemWatch problems;

    /// Chooses the ports that this machine remembers, if present.
    void restorePorts();
    /// Chooses the rig's ports, for this run only.
    void connectToRig();
    /// The user wants the rig instead of real ports.
    std::function<void()> onRigWanted;
    /// Shows the ways to begin, if nobody has begun on this machine yet.
    void welcome();
    /// Opens the session that the program was started with, if any, then offers what crashed copies left.
    void begin(const QString& sessionFile);
    /// Puts the window where it last was, or the first time on its screen, inset by 80 pixels on every side, and
    /// activates it.
    void showWindow();
    /// The View menu, for adding what else there is to see.
    QMenu& viewMenu() { return *_view; }
    /// Closes the window and ends the program, if nothing is lost or the user agrees.
    void quit();
    /// Ends the program because the system asks: without questions, keeping unsaved work for the next start.
    void leave(int status);

private:
    /// What was last recalled and is still in the session.
    enum class LoadedItemType : std::uint8_t { snapshot, pass };
    struct LoadedItem {
        LoadedItemType type;
        QUuid id;
    };

    std::optional<TimecodePosition> playedPassEnd() const;
    void buildMenus();
    void buildAutomation();
    void showMonitor();
    void buildProblems();
    void setLoadedItem(const std::optional<LoadedItem>& item);
    /// Whether what is loaded is the take that waits for its name.
    bool isTakeLoaded() const;
    /// "Snapshot: NAME", "Pass: NAME", or "Take" for one that waits; empty if nothing was recalled.
    QString loadedItemText() const;
    void showTitle();

    PassFiles _passFiles;
    class CloseQuestion;
    std::unique_ptr<CloseQuestion> _closeQuestion;
    QMenu* _view = nullptr;
    HelpMenu* _help = nullptr;
    MIDIMonitorView* _monitor = nullptr;
    std::optional<LoadedItem> _loadedItem;
    Signal<>::Connection _stopListener;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
