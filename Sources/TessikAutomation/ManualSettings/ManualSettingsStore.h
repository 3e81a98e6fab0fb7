#pragma once

#include "TessikAutomation/ManualSettings/ManualChannelSettingsBox.h"

#include <QMap>

#include <map>
#include <memory>

namespace tessik {

/// The manual settings of all channels, by channel id. Local only: never sent. Main thread only.
class ManualSettingsStore {
public:
    /// The channel's box, created with the defaults if missing. It lives as long as the store.
    ManualChannelSettingsBox& box(const QString& channelID);
    /// The channel's record, or the defaults if it has no box. Does not create one.
    ManualChannelSettings settings(const QString& channelID) const;
    /// Stores a channel's whole record, and calls `onChange` if that changes it.
    void store(const QString& channelID, const ManualChannelSettings& settings);
    /// Every channel that has a box.
    QMap<QString, ManualChannelSettings> contents() const;

    /// Replaces all channels: those not in the map get the defaults. Boxes that stay equal are not written.
    void load(const QMap<QString, ManualChannelSettings>& loaded);
    /// Sets every channel to the defaults and calls `onChange` once.
    void resetAll();

    /// Called after `resetAll`, `store` and every user edit of a box, never on `load`.
    std::function<void()> onChange;

private:
    ManualChannelSettingsBox& makeBox(const QString& channelID, const ManualChannelSettings& settings);

    std::map<QString, std::unique_ptr<ManualChannelSettingsBox>> _boxes;
};

} // namespace tessik
