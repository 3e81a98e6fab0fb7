#pragma once

#include "TessikKit/Models/ConsoleModel.h"

#include <QStringList>

namespace tessik {

/// Which scribble strip is being edited, and the way of Tab over them: the inputs in order, stereo, the groups.
class ScribbleFocusCoordinator {
public:
    explicit ScribbleFocusCoordinator(const ConsoleModel& consoleModel) : _consoleModel(consoleModel) {}

    /// The id of the channel whose strip is being edited; none while none is.
    QProperty<std::optional<QString>> editingID{std::nullopt};
    /// Called with the new place in `order` after `advance` moved on.
    std::function<void(int)> onMove;

    QStringList order() const;
    /// Moves editing to the next strip or the one before. At either end, or from a strip that is not shown, nothing.
    void advance(const QString& fromID, bool forward);

private:
    const ConsoleModel& _consoleModel;
};

} // namespace tessik
