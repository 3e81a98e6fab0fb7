#pragma once

#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/Snapshots/SnapshotStore.h"

namespace tessik {

/// Takes snapshots of the console and puts them back: on screen, into the manual settings and out to the desk.
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
            /// What the desk held, or may have held where it never told; none where nothing was known of the channel.
            std::optional<ChannelSnapshot> state;
        };
        std::vector<Channel> channels;
    };
    /// Puts back every channel that the console's size shows. The desk gets the whole state as one assertion.
    Former recall(const Snapshot& snapshot);
    /// Takes a recall back, on the desk too. Of a channel of which nothing was known nothing can be had back.
    void putBack(const Former& former);
    /// The same without the manual settings, for the session's default snapshot where it has one: after an open.
    void recallDefault(const SnapshotStore& store);

private:
    std::optional<ChannelSnapshot> stateOnDesk(const ChannelState& channel) const;
    void recallChannels(const QList<ChannelSnapshot>& channels);

    ConsoleModel& _consoleModel;
    ManualSettingsStore& _manualSettings;
    MIDIOutputManager& _output;
};

} // namespace tessik
