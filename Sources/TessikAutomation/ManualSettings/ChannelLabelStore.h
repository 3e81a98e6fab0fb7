#pragma once

#include "TessikAutomation/ManualSettings/ChannelLabel.h"

#include <QMap>
#include <QProperty>

#include <functional>

namespace tessik {

/// The session's channel labels, by channel id; a channel without an entry has none. Main thread only.
class ChannelLabelStore {
public:
    /// Written as a whole when a session is opened, which calls no `onChange`.
    QProperty<QMap<QString, ChannelLabel>> labelsByChannelID;
    /// Called after each `update`, `remove` and `resetAll`.
    std::function<void()> onChange;

    /// Stores a channel's label, also one without a name.
    void update(const ChannelLabel& label, const QString& channelID);
    /// Leaves the channel without a label, as it was before its first.
    void remove(const QString& channelID);
    void resetAll();
};

} // namespace tessik
