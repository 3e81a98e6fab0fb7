#pragma once

#include "TessikKit/Models/Published.h"

#include <QStringList>

namespace tessik {

/// The channels that a command on one of them applies to, by id. As in any list: a click selects one alone, Ctrl adds
/// or removes one, Shift extends from the previous one to this.
class StripSelection {
public:
    Published<QStringList, StripSelection> selectedIDs;

    /// `order` is the order of the strips.
    void click(const QString& id, Qt::KeyboardModifiers modifiers, const QStringList& order);
    bool contains(const QString& id) const { return selectedIDs.value().contains(id); }

private:
    QString _anchor;
};

} // namespace tessik
