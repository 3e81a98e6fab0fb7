#pragma once

#include <QList>
#include <QUuid>

#include <algorithm>
#include <optional>

namespace tessik {

/// What the stores do with their lists of records that have an `id` and a `createdAt`.

template <typename Record>
std::optional<Record> withID(const QList<Record>& records, const QUuid& id) {
    const auto found =
        std::find_if(records.begin(), records.end(), [&id](const Record& each) { return each.id == id; });
    return found == records.end() ? std::nullopt : std::optional(*found);
}

template <typename Record>
QList<Record> withoutID(QList<Record> records, const QUuid& id) {
    records.removeIf([&id](const Record& record) { return record.id == id; });
    return records;
}

/// With another name for the record of that id; all keep their places.
template <typename Record>
QList<Record> renamed(QList<Record> records, const QUuid& id, const QString& name) {
    for (Record& record : records)
        if (record.id == id) record.name = name;
    return records;
}

/// By `createdAt`, latest first; records of the same second keep their order.
template <typename Record>
void sortNewestFirst(QList<Record>& records) {
    std::stable_sort(records.begin(), records.end(),
                     [](const Record& a, const Record& b) { return a.createdAt > b.createdAt; });
}

} // namespace tessik
