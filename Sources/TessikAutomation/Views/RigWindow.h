#pragma once

#include "TessikRig/SimulatedConsole.h"

#include <QWidget>

namespace tessik {

/// The rig's own surface, to play the engineer's hands: drag a fader, click a mute, recall a scene. The white cap is
/// the physical fader, the amber line where the VCA stands.
class RigWindow final : public QWidget {
public:
    explicit RigWindow(SimulatedConsole& desk, QWidget* parent = nullptr);
    ~RigWindow() override;

private:
    SimulatedConsole& _desk;
};

} // namespace tessik
