#pragma once

#include "TessikKit/Models/ConsoleModel.h"

#include <QStringList>

namespace tessik {

/// Which scribble strip is being edited, and the order in which Tab visits them: the inputs, stereo, the groups.
class ScribbleFocusCoordinator {
public:
    explicit ScribbleFocusCoordinator(const ConsoleModel& consoleModel) : _consoleModel(consoleModel) {}

    /// The id of the channel whose strip is being edited; none if none is.
    QProperty<std::optional<QString>> editingID{std::nullopt};
    /// Called with the new place in `order` after `advance` moved on.
    std::function<void(int)> onMove;

    QStringList order() const;
    /// Moves editing to the next or previous strip. Does nothing at either end, or from a strip that is not shown.
    void advance(const QString& fromID, bool forward);

private:
    const ConsoleModel& _consoleModel;
};

} // namespace tessik
