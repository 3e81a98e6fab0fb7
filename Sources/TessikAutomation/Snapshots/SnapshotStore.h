#pragma once

#include "TessikAutomation/Snapshots/Snapshot.h"
#include "TessikKit/Models/Published.h"

namespace tessik {

/// The session's snapshots, and which of them is its starting console state. Main thread only.
class SnapshotStore {
public:
    /// Newest first after a load; later captures are appended.
    Published<QList<Snapshot>, SnapshotStore> snapshots;
    Published<std::optional<QUuid>, SnapshotStore> defaultSnapshotID{std::nullopt};
    /// Called after each `save`, `rename`, `insert`, `remove` and `setDefault`, never on `load`.
    std::function<void()> onChange;

    /// None if there is no default or it names a snapshot that is not in the list.
    std::optional<Snapshot> defaultSnapshot() const;

    std::optional<Snapshot> find(const QUuid& id) const;
    /// Appends the snapshot, or replaces the one with the same id.
    void save(const Snapshot& snapshot);
    /// Keeps its place in the list.
    void rename(const QUuid& id, const QString& name);
    /// Puts a removed snapshot back in its place.
    void insert(qsizetype index, const Snapshot& snapshot);
    /// Clears the default if it was this one.
    void remove(const QUuid& id);
    void setDefault(std::optional<QUuid> id);
    /// Pressing a snapshot's star: makes it the default, or clears the default if it is.
    void toggleDefault(const QUuid& id);
    /// Replaces all snapshots and the default.
    void load(QList<Snapshot> loaded, std::optional<QUuid> defaultID);
};

} // namespace tessik
