#pragma once

#include <QProperty>
#include <QStringList>

namespace tessik {

/// The channels that a command on one of them means, by id. As in any list: a click selects one alone, with Ctrl one
/// more or less, with Shift all from the one before to this.
class StripSelection {
public:
    QProperty<QStringList> selectedIDs;

    /// `order` is that of the strips.
    void click(const QString& id, Qt::KeyboardModifiers modifiers, const QStringList& order);
    bool contains(const QString& id) const { return selectedIDs.value().contains(id); }

private:
    QString _anchor;
};

} // namespace tessik
