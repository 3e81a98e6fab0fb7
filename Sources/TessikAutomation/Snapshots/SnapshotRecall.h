#pragma once

#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/Snapshots/SnapshotStore.h"

namespace tessik {

/// Takes snapshots of the console and restores them: on screen, in the manual settings and on the desk.
class SnapshotRecall {
public:
    SnapshotRecall(ConsoleModel& consoleModel, ManualSettingsStore& manualSettings, MIDIOutputManager& output);

    /// Every visible channel with its manual settings, under a new id.
    Snapshot capture(const QString& name, const QDateTime& createdAt) const;
    /// What a recall replaces.
    struct Former {
        struct Channel {
            ChannelState* channel;
            std::optional<int> nullTarget;
            std::optional<ManualChannelSettings> manualSettings; ///< where the recall replaces them
            /// What the desk held, or probably held if it never reported; none if nothing was known of the channel.
            std::optional<ChannelSnapshot> state;
        };
        std::vector<Channel> channels;
    };
    /// Restores every channel that the console's size shows. The desk gets the whole state as one assertion.
    Former recall(const Snapshot& snapshot);
    /// Undoes a recall, on the desk too. A channel of which nothing was known stays as recalled.
    void putBack(const Former& former);
    /// Recalls the session's default snapshot, if it has one, without manual settings: after an open.
    void recallDefault(const SnapshotStore& store);

private:
    std::optional<ChannelSnapshot> stateOnDesk(const ChannelState& channel) const;
    void recallChannels(const QList<ChannelSnapshot>& channels);

    ConsoleModel& _consoleModel;
    ManualSettingsStore& _manualSettings;
    MIDIOutputManager& _output;
};

} // namespace tessik
