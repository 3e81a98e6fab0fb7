#pragma once

#include "TessikAutomation/MIDI/MIDIOutputManager.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/Snapshots/SnapshotStore.h"

namespace tessik {

/// Takes snapshots of the console and puts them back: on screen, into the manual settings and out to the desk.
class SnapshotRecall {
public:
    SnapshotRecall(ConsoleModel& consoleModel, ManualSettingsStore& manualSettings, MIDIOutputManager& output);

    /// Every visible channel with its manual settings, under a new id.
    Snapshot capture(const QString& name, const QDateTime& createdAt) const;
    /// Puts back every channel that the console's size shows. The desk gets the whole state as one assertion.
    void recall(const Snapshot& snapshot);
    /// The same without the manual settings, for the session's default snapshot where it has one: after an open.
    void recallDefault(const SnapshotStore& store);

private:
    void recallChannels(const QList<ChannelSnapshot>& channels);

    ConsoleModel& _consoleModel;
    ManualSettingsStore& _manualSettings;
    MIDIOutputManager& _output;
};

} // namespace tessik
