#pragma once

#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"

#include <QUndoStack>

namespace tessik {

/// One channel's manual settings, copied for pasting onto others.
class SettingsClipboard {
public:
    SettingsClipboard(ManualSettingsStore& store, QUndoStack& history) : _store(store), _history(history) {}

    bool isEmpty() const { return !_copied; }
    void copy(const QString& channelID) { _copied = _store.settings(channelID); }
    /// One undo step, however many channels. `what` names the target: "channel 5".
    void paste(const QStringList& channelIDs, const QString& what);

private:
    ManualSettingsStore& _store;
    QUndoStack& _history;
    std::optional<ManualChannelSettings> _copied;
};

} // namespace tessik
