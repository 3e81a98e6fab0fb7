#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"
#include "TessikAutomation/ManualSettings/ChannelLabel.h"
#include "TessikAutomation/ManualSettings/MasterSectionSettings.h"
#include "TessikAutomation/Snapshots/Snapshot.h"

#include <QMap>

namespace tessik {

/// Everything about one mix: the contents of a session file. A copy shares its lists, so it costs next to nothing.
struct SessionDocument {
    static constexpr std::int64_t currentFormatVersion = 1;

    std::int64_t formatVersion = currentFormatVersion; ///< kept as read, never compared
    QDateTime createdAt;                               ///< UTC, whole seconds
    QDateTime modifiedAt;                              ///< UTC, whole seconds
    QList<Snapshot> snapshots;
    QList<AutomationPass> passes;
    QMap<QString, ChannelLabel> channelLabels;           ///< by channel id; only channels that were ever edited
    QMap<QString, ManualChannelSettings> manualSettings; ///< by channel id; only channels that were ever edited
    MasterSectionSettings masterSection;
    std::optional<QUuid> defaultSnapshotID; ///< may name a snapshot that is not in the list
    std::optional<TimecodePosition> startLocator;
    std::optional<TimecodePosition> endLocator;

    /// A fresh session.
    static SessionDocument empty(const QDateTime& now) { return {.createdAt = now, .modifiedAt = now}; }

    friend bool operator==(const SessionDocument&, const SessionDocument&) = default;
};

template <>
inline constexpr auto recordFields<SessionDocument> = std::tuple{
    RecordField{"formatVersion", &SessionDocument::formatVersion},
    RecordField{"createdAt", &SessionDocument::createdAt},
    RecordField{"modifiedAt", &SessionDocument::modifiedAt},
    RecordField{"snapshots", &SessionDocument::snapshots},
    RecordField{"passes", &SessionDocument::passes},
    RecordField{"channelLabels", &SessionDocument::channelLabels},
    RecordField{"manualSettings", &SessionDocument::manualSettings},
    RecordField{"masterSection", &SessionDocument::masterSection},
    RecordField{"defaultSnapshotID", &SessionDocument::defaultSnapshotID},
    RecordField{"startLocator", &SessionDocument::startLocator},
    RecordField{"endLocator", &SessionDocument::endLocator},
};

} // namespace tessik
