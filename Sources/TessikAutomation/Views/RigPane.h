#pragma once

#include "TessikAutomation/Views/Controls/ControlTable.h"
#include "TessikRig/SimulatedConsole.h"

#include <QDockWidget>
#include <QTimer>

namespace tessik {

class ControlHost;
class MainWindow;

/// The rig's own controls, to act as the engineer's hands: drag a fader, click a mute, recall a scene. The white cap is
/// the physical fader, the amber line the VCA's position. A pane below the desk that can float.
class RigPane final : public QDockWidget {
    Q_OBJECT

public:
    /// What the pane's controls show and operate.
    struct Subject {
        SimulatedConsole* desk;
        QProperty<int>* changes; ///< written when the desk's state changes
    };

    /// Docks it in `window`, which owns it. `desk` must outlive it.
    RigPane(SimulatedConsole& desk, MainWindow& window);

    ControlHost& surface() const { return *_surface; }

private:
    QWidget* makeTitleBar(SimulatedConsole& desk, MainWindow& window);

    ControlTable<Subject> _table;
    QProperty<int> _changes{0};
    QTimer _showChanges; ///< changes come faster than they are shown
    ControlHost* _surface;
    std::vector<QPropertyNotifier> _observers;
    Signal<>::Connection _deskListener;
};

} // namespace tessik
