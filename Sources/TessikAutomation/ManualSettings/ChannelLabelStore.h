#pragma once

#include "TessikAutomation/ManualSettings/ChannelLabel.h"

#include <QMap>
#include <QProperty>

#include <functional>

namespace tessik {

/// The session's channel labels, by channel id; a channel without an entry has none. Main thread only.
class ChannelLabelStore {
public:
    /// Written as a whole when a session is opened, which does not call `onChange`.
    QProperty<QMap<QString, ChannelLabel>> labelsByChannelID;
    /// Called after each `update`, `remove` and `resetAll`.
    std::function<void()> onChange;

    /// Stores a channel's label, even one without a name.
    void update(const ChannelLabel& label, const QString& channelID);
    /// Removes the channel's label, as if it never had one.
    void remove(const QString& channelID);
    void resetAll();
};

} // namespace tessik
