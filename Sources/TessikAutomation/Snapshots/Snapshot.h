#pragma once

#include "TessikAutomation/Snapshots/ChannelSnapshot.h"

#include <QDateTime>
#include <QList>
#include <QUuid>

namespace tessik {

/// The whole console at one moment, under a name.
struct Snapshot {
    QUuid id;
    QString name;
    QDateTime createdAt; ///< UTC, whole seconds
    QList<ChannelSnapshot> channels;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;
};

template <>
inline constexpr auto recordFields<Snapshot> =
    std::tuple{RecordField{"id", &Snapshot::id}, RecordField{"name", &Snapshot::name},
               RecordField{"createdAt", &Snapshot::createdAt}, RecordField{"channels", &Snapshot::channels}};

} // namespace tessik
