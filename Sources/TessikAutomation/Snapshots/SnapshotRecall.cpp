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

SnapshotRecall::Former SnapshotRecall::recall(const Snapshot& snapshot) {
    Former former;
    for (const ChannelSnapshot& entry : snapshot.channels) {
        ChannelState* channel = _consoleModel.channelState(entry.kind);
        if (!channel || !_consoleModel.isVisible(*channel)) continue;
        former.channels.push_back({.channel = channel,
                                   .nullTarget = channel->nullTarget.value(),
                                   .manualSettings = {},
                                   .state = stateOnDesk(*channel)});
        if (!entry.manualSettings) continue;
        former.channels.back().manualSettings = _manualSettings.settings(channel->id);
        _manualSettings.store(channel->id, *entry.manualSettings);
    }
    recallChannels(snapshot.channels);
    return former;
}

void SnapshotRecall::putBack(const Former& former) {
    QList<ChannelSnapshot> states;
    for (const Former::Channel& each : former.channels) {
        if (each.manualSettings) _manualSettings.store(each.channel->id, *each.manualSettings);
        if (each.state) states.append(*each.state);
    }
    recallChannels(states);
    for (const Former::Channel& each : former.channels)
        if (each.state) _consoleModel.setNullTarget(*each.channel, each.nullTarget);
}

/// Screen and desk may differ, under NULL for instance; the desk is what is heard.
std::optional<ChannelSnapshot> SnapshotRecall::stateOnDesk(const ChannelState& channel) const {
    ChannelSnapshot state = ChannelSnapshot::of(channel);
    const std::optional<int> fader = _output.believedValue(MIDIChannelMapping::faderCC(channel.kind));
    const std::optional<int> switches = _output.believedValue(MIDIChannelMapping::switchCC(channel.kind));
    if (channel.lastUpdate.value() == distantPast && !fader && !switches) return std::nullopt;
    if (fader) state.faderValue = *fader;
    if (switches) state.setSwitches(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(*switches)));
    return state;
}

void SnapshotRecall::recallDefault(const SnapshotStore& store) {
    if (const std::optional<Snapshot> snapshot = store.defaultSnapshot()) recallChannels(snapshot->channels);
}

void SnapshotRecall::recallChannels(const QList<ChannelSnapshot>& channels) {
    std::vector<DeskChannelState> asserted;
    for (const ChannelSnapshot& entry : channels) {
        ChannelState* channel = _consoleModel.channelState(entry.kind);
        if (!channel || !_consoleModel.isVisible(*channel)) continue;
        _consoleModel.recalled(MIDIChannelMapping::faderCC(entry.kind), entry.faderPosition());
        _consoleModel.recalled(MIDIChannelMapping::switchCC(entry.kind),
                               MIDIChannelMapping::encodeSwitchByte(entry.switches()));
        asserted.push_back({.kind = entry.kind, .faderValue = entry.faderPosition(), .switches = entry.switches()});
    }
    _output.assertState(asserted);
}

} // namespace tessik
