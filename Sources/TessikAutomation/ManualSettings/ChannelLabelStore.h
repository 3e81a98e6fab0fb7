#pragma once

#include "TessikAutomation/ManualSettings/ChannelLabel.h"
#include "TessikKit/Models/Published.h"

#include <QMap>

#include <functional>

namespace tessik {

/// The session's channel labels, by channel id; a channel without an entry has none. Main thread only.
class ChannelLabelStore {
public:
    Published<QMap<QString, ChannelLabel>, ChannelLabelStore> labelsByChannelID;
    /// Called after each `update`, `remove` and `resetAll`.
    std::function<void()> onChange;

    /// Stores a channel's label, even one without a name.
    void update(const ChannelLabel& label, const QString& channelID);
    /// Removes the channel's label, as if it never had one.
    void remove(const QString& channelID);
    void resetAll();
    /// Replaces all labels, without `onChange`, for opening a session.
    void load(const QMap<QString, ChannelLabel>& loaded) { labelsByChannelID = loaded; }
};

} // namespace tessik
