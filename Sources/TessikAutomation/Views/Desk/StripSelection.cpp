#include "TessikAutomation/Views/Desk/StripSelection.h"

namespace tessik {

void StripSelection::click(const QString& id, Qt::KeyboardModifiers modifiers, const QStringList& order) {
    QStringList selected = selectedIDs;
    if (modifiers & Qt::ShiftModifier && order.contains(_anchor)) {
        const auto [from, to] = std::minmax({order.indexOf(_anchor), order.indexOf(id)});
        selectedIDs = order.mid(from, to - from + 1);
        return;
    }
    _anchor = id;
    const bool was = selected.removeAll(id) > 0;
    if (modifiers & Qt::ControlModifier)
        selectedIDs = was ? selected : selected << id;
    else
        selectedIDs = was && selected.isEmpty() ? QStringList() : QStringList{id};
}

} // namespace tessik
