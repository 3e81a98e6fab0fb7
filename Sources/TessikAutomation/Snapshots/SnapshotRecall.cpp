#include "TessikAutomation/Snapshots/SnapshotRecall.h"

namespace tessik {

SnapshotRecall::SnapshotRecall(ConsoleModel& consoleModel, ManualSettingsStore& manualSettings,
                               MIDIOutputManager& output)
    : _consoleModel(consoleModel), _manualSettings(manualSettings), _output(output) {}

Snapshot SnapshotRecall::capture(const QString& name, const QDateTime& createdAt) const {
    Snapshot snapshot{.id = QUuid::createUuid(), .name = name, .createdAt = createdAt, .channels = {}};
    for (const ChannelState* channel : _consoleModel.allVisibleChannels()) {
        ChannelSnapshot entry = ChannelSnapshot::of(*channel);
        entry.manualSettings = _manualSettings.settings(channel->id);
        snapshot.channels.append(entry);
    }
    return snapshot;
}

void SnapshotRecall::recall(const Snapshot& snapshot) {
    recallChannels(snapshot.channels);
    for (const ChannelSnapshot& entry : snapshot.channels) {
        const ChannelState* channel = _consoleModel.channelState(entry.kind);
        if (channel && _consoleModel.isVisible(*channel) && entry.manualSettings)
            _manualSettings.store(channel->id, *entry.manualSettings);
    }
}

void SnapshotRecall::recallDefault(const SnapshotStore& store) {
    if (const std::optional<Snapshot> snapshot = store.defaultSnapshot()) recallChannels(snapshot->channels);
}

void SnapshotRecall::recallChannels(const QList<ChannelSnapshot>& channels) {
    std::vector<DeskChannelState> asserted;
    for (const ChannelSnapshot& entry : channels) {
        ChannelState* channel = _consoleModel.channelState(entry.kind);
        if (!channel || !_consoleModel.isVisible(*channel)) continue;
        channel->nullTarget = entry.faderPosition();
        _consoleModel.apply(MIDIChannelMapping::faderCC(entry.kind), entry.faderPosition(), ChangeOrigin::recall);
        _consoleModel.apply(MIDIChannelMapping::switchCC(entry.kind),
                            MIDIChannelMapping::encodeSwitchByte(entry.switches()), ChangeOrigin::recall);
        asserted.push_back({.kind = entry.kind, .faderValue = entry.faderPosition(), .switches = entry.switches()});
    }
    _output.assertState(asserted);
}

} // namespace tessik
