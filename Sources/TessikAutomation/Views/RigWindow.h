#pragma once

#include "TessikRig/SimulatedConsole.h"

#include <QWidget>

namespace tessik {

/// The rig's own surface, to play the engineer's hands: drag a fader, click a mute, recall a scene. The white cap is
/// the physical fader, the amber line where the VCA stands.
class RigWindow final : public QWidget {
public:
    /// A window of its own beside `parent`, the program's, and gone with it.
    RigWindow(SimulatedConsole& desk, QWidget* parent);
    ~RigWindow() override;

    /// Shows it; the first time in the lower right corner of the screen, where it hides no name of a channel.
    void present();

private:
    SimulatedConsole& _desk;
    bool _isPlaced = false;
};

} // namespace tessik
