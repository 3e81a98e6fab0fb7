#include "TessikAutomation/Snapshots/SnapshotStore.h"

#include "TessikAutomation/Persistence/StoreLists.h"

namespace tessik {

std::optional<Snapshot> SnapshotStore::defaultSnapshot() const {
    const std::optional<QUuid> id = defaultSnapshotID.value();
    return id ? find(*id) : std::nullopt;
}

std::optional<Snapshot> SnapshotStore::find(const QUuid& id) const { return withID(snapshots.value(), id); }

void SnapshotStore::save(const Snapshot& snapshot) {
    QList<Snapshot> all = withoutID(snapshots.value(), snapshot.id);
    all.append(snapshot);
    snapshots = all;
    if (onChange) onChange();
}

void SnapshotStore::rename(const QUuid& id, const QString& name) {
    snapshots = renamed(snapshots.value(), id, name);
    if (onChange) onChange();
}

void SnapshotStore::insert(qsizetype index, const Snapshot& snapshot) {
    QList<Snapshot> all = withoutID(snapshots.value(), snapshot.id);
    all.insert(std::min(index, all.size()), snapshot);
    snapshots = all;
    if (onChange) onChange();
}

void SnapshotStore::remove(const QUuid& id) {
    snapshots = withoutID(snapshots.value(), id);
    if (defaultSnapshotID.value() == id) defaultSnapshotID = std::nullopt;
    if (onChange) onChange();
}

void SnapshotStore::setDefault(std::optional<QUuid> id) {
    defaultSnapshotID = id;
    if (onChange) onChange();
}

void SnapshotStore::toggleDefault(const QUuid& id) {
    setDefault(defaultSnapshotID.value() == id ? std::nullopt : std::optional(id));
}

void SnapshotStore::load(QList<Snapshot> loaded, std::optional<QUuid> defaultID) {
    sortNewestFirst(loaded);
    snapshots = std::move(loaded);
    defaultSnapshotID = defaultID;
}

} // namespace tessik
