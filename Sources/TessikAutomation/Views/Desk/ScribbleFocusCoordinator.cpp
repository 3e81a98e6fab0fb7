#include "TessikAutomation/Views/Desk/ScribbleFocusCoordinator.h"

namespace tessik {

QStringList ScribbleFocusCoordinator::order() const {
    QStringList ids;
    for (const ChannelState* channel : _consoleModel.visibleInputs())
        ids.append(channel->id);
    ids.append(_consoleModel.stereo().id);
    for (const ChannelState* channel : _consoleModel.groups())
        ids.append(channel->id);
    return ids;
}

void ScribbleFocusCoordinator::advance(const QString& fromID, bool forward) {
    const QStringList ids = order();
    const qsizetype from = ids.indexOf(fromID);
    const qsizetype to = forward ? from + 1 : from - 1;
    if (from < 0 || to < 0 || to >= ids.size()) return;
    editingID = ids[to];
    if (onMove) onMove(int(to));
}

} // namespace tessik
