#pragma once

#include "TessikAutomation/Snapshots/Snapshot.h"

namespace tessik {

/// The session's snapshots and which of them is its starting console state. Main thread only.
class SnapshotStore {
public:
    /// Newest first after a load; one captured since stands at the end.
    QProperty<QList<Snapshot>> snapshots;
    QProperty<std::optional<QUuid>> defaultSnapshotID{std::nullopt};
    /// Called after each `save`, `rename`, `insert`, `remove` and `setDefault`, never on `load`.
    std::function<void()> onChange;

    /// None also where the default names no snapshot of the list.
    std::optional<Snapshot> defaultSnapshot() const;

    /// Adds the snapshot at the end, in the place of one with the same id.
    void save(const Snapshot& snapshot);
    /// The place in the list stays.
    void rename(const QUuid& id, const QString& name);
    /// Puts a removed snapshot back to its place.
    void insert(qsizetype index, const Snapshot& snapshot);
    /// Clears the default where it was this one.
    void remove(const QUuid& id);
    void setDefault(std::optional<QUuid> id);
    /// What pressing a snapshot's star does: makes it the default, or none where it is.
    void toggleDefault(const QUuid& id);
    /// Replaces all snapshots and the default.
    void load(QList<Snapshot> loaded, std::optional<QUuid> defaultID);
};

} // namespace tessik
