#include "TessikKit/Models/ConsoleModel.h"

namespace tessik {

using namespace std::chrono_literals;

namespace {
constexpr Uptime dumpWindow = 500ms;
constexpr std::size_t dumpThreshold = 16; // different channels within the window
} // namespace

QString ConsoleModel::rawValue(ModelSize size) {
    return size == ModelSize::ch24 ? QStringLiteral("24-Channel") : QStringLiteral("32-Channel");
}

std::optional<ConsoleModel::ModelSize> ConsoleModel::sizeFromRawValue(const QString& raw) {
    for (const ModelSize size : allModelSizes)
        if (rawValue(size) == raw) return size;
    return std::nullopt;
}

ConsoleModel::ConsoleModel(const UptimeClock& clock) : _clock(clock) {
    const auto add = [this](ChannelKind kind) {
        return _channels.emplace_back(std::make_unique<ChannelState>(kind)).get();
    };
    for (int n = 1; n <= maxInputs; ++n)
        _inputs.push_back(add(ChannelKind::input(n)));
    for (int n = 1; n <= groupCount; ++n)
        _groups.push_back(add(ChannelKind::group(n)));
    add(ChannelKind::stereo());
}

ChannelState* ConsoleModel::channelState(ChannelKind kind) const {
    const auto nth = [&kind](const Channels& list) -> ChannelState* {
        const std::int64_t n = kind.number();
        return n >= 1 && n <= std::int64_t(list.size()) ? list[std::size_t(n - 1)] : nullptr;
    };
    switch (kind.kind()) {
    case ChannelKind::Case::input: return nth(_inputs);
    case ChannelKind::Case::group: return nth(_groups);
    case ChannelKind::Case::stereo: break;
    }
    return &stereo();
}

ConsoleModel::Channels ConsoleModel::visibleInputs() const {
    return {_inputs.begin(), _inputs.begin() + inputCount(modelSize.value())};
}

ConsoleModel::Channels ConsoleModel::allVisibleChannels() const {
    Channels all = visibleInputs();
    all.insert(all.end(), _groups.begin(), _groups.end());
    all.push_back(&stereo());
    return all;
}

bool ConsoleModel::isVisible(const ChannelState& channel) const {
    return channel.kind.kind() != ChannelKind::Case::input || channel.kind.number() <= inputCount(modelSize.value());
}

ChannelState* ConsoleModel::channelOf(int cc) const {
    auto kind = MIDIChannelMapping::channelKindForFaderCC(cc);
    if (!kind) kind = MIDIChannelMapping::channelKindForSwitchCC(cc);
    return kind ? channelState(*kind) : nullptr;
}

/// The channel written; null where the controller is none's.
ChannelState* ConsoleModel::write(int cc, int value) {
    ChannelState* channel = channelOf(cc);
    if (!channel) return nullptr;
    if (cc < MIDIChannelMapping::switchCCOffset) {
        channel->faderValue = value;
        return channel;
    }
    const ChannelSwitches switches = MIDIChannelMapping::decodeSwitchByte(std::uint8_t(value));
    channel->monMuted = switches.monMuted;
    channel->auxMuted = switches.auxMuted;
    channel->eqOn = switches.eqOn;
    channel->chanMuted = switches.chanMuted;
    return channel;
}

void ConsoleModel::handle(Uptime stamp, int cc, int value) {
    messageCount = messageCount.value() + 1;
    ChannelState* channel = write(cc, value);
    if (!channel) return;
    channel->lastUpdate = _clock.now();
    const bool isFader = MIDIChannelMapping::channelKindForFaderCC(cc).has_value();
    if (isFader) noteFaderMessage(*channel, cc, value);
    _last = {cc, value};
    // The flag outlives its dump until the next fader message: a switch pressed later is a hand's.
    const bool isDump = isReceivingStateDump.value() && _clock.now() - lastFaderMessageAt.value() <= dumpWindow;
    changed({stamp, cc, value, isDump ? ChangeOrigin::dump : ChangeOrigin::desk});
}

void ConsoleModel::edited(int cc, int value) {
    if (write(cc, value)) tell(cc, value, ChangeOrigin::screen);
}

void ConsoleModel::recalled(int cc, int value) {
    ChannelState* channel = write(cc, value);
    if (!channel) return;
    if (cc < MIDIChannelMapping::switchCCOffset) channel->nullTarget = value;
    channel->lastUpdate = _clock.now();
    tell(cc, value, ChangeOrigin::recall);
}

ControllerValues ConsoleModel::zeroed(bool isSent) {
    ControllerValues values;
    for (ChannelState* channel : allVisibleChannels()) {
        channel->nullTarget = std::nullopt;
        channel->lastUpdate = _clock.now();
        values[std::size_t(MIDIChannelMapping::faderCC(channel->kind))] = 0;
        values[std::size_t(MIDIChannelMapping::switchCC(channel->kind))] = MIDIChannelMapping::encodeSwitchByte({});
    }
    for (std::size_t cc = 0; cc < values.size(); ++cc)
        if (values[cc]) write(int(cc), *values[cc]);
    if (!isSent) screenZeroed();
    for (std::size_t cc = 0; isSent && cc < values.size(); ++cc)
        if (values[cc]) tell(int(cc), *values[cc], ChangeOrigin::zero);
    return values;
}

void ConsoleModel::played(int cc, int value, bool isHeld) {
    const bool isFader = cc < MIDIChannelMapping::switchCCOffset;
    ChannelState* channel = isFader && isHeld ? channelOf(cc) : write(cc, value);
    if (!channel) return;
    channel->lastUpdate = _clock.now();
    if (isFader) channel->nullTarget = isHeld ? std::optional(value) : std::nullopt; // else what a dump or recall left
}

void ConsoleModel::setNullTarget(ChannelState& channel, std::optional<int> target) { channel.nullTarget = target; }

QString ConsoleModel::lastMessage() const {
    if (!_last) return QStringLiteral("No MIDI received yet");
    const bool isFader = MIDIChannelMapping::channelKindForFaderCC(_last->cc).has_value();
    return QStringLiteral("CC%1 -> %2 %3 = %4")
        .arg(_last->cc)
        .arg(channelOf(_last->cc)->displayName, isFader ? QLatin1String("fader") : QLatin1String("switches"))
        .arg(_last->value);
}

std::vector<ConsoleModel::RecentFader> ConsoleModel::recentFaderChannelIDs() const {
    std::vector<RecentFader> recent;
    for (const auto& [cc, at] : _recentFaders)
        recent.push_back({channelOf(cc)->id, at});
    return recent;
}

void ConsoleModel::noteFaderMessage(ChannelState& channel, int cc, int value) {
    const Uptime now = _clock.now();
    if (now - lastFaderMessageAt.value() > dumpWindow) isReceivingStateDump = false;
    lastFaderMessageAt = now;
    forgetRecentFaders(now - dumpWindow);
    _recentFaders.emplace_back(cc, now);
    if (_recentCounts[std::size_t(cc)]++ == 0) ++_recentChannels;
    if (isReceivingStateDump.value()) {
        channel.nullTarget = value;
        return;
    }
    if (_recentChannels < dumpThreshold) return;
    isReceivingStateDump = true;
    for (ChannelState* reported : allVisibleChannels())
        if (_recentCounts[std::size_t(MIDIChannelMapping::faderCC(reported->kind))] > 0)
            reported->nullTarget = reported->faderValue.value();
}

// The counts make the window cost the same however fast messages arrive.
void ConsoleModel::forgetRecentFaders(Uptime before) {
    while (!_recentFaders.empty() && _recentFaders.front().second < before) {
        if (--_recentCounts[std::size_t(_recentFaders.front().first)] == 0) --_recentChannels;
        _recentFaders.pop_front();
    }
}

} // namespace tessik
