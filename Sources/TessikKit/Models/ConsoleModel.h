#pragma once

#include "TessikKit/Models/ChannelState.h"
#include "TessikKit/Models/ConsoleChange.h"

#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tessik {

/// The mirror of the automatable part of the console: 32 inputs, 8 groups and the stereo master, whatever its size.
/// Main thread only.
class ConsoleModel {
public:
    /// The two console sizes. A size only decides which inputs are shown.
    enum class ModelSize : std::uint8_t { ch24, ch32 };
    static constexpr std::array allModelSizes{ModelSize::ch24, ModelSize::ch32};
    static constexpr int inputCount(ModelSize size) { return size == ModelSize::ch24 ? 24 : 32; }
    /// "24-Channel" or "32-Channel".
    static QString rawValue(ModelSize size);
    static std::optional<ModelSize> sizeFromRawValue(const QString& rawValue);

    explicit ConsoleModel(const UptimeClock& clock = UptimeClock::system());

    using Channels = std::vector<ChannelState*>;

    QProperty<ModelSize> modelSize{ModelSize::ch32};
    const Channels& inputs() const { return _inputs; }
    const Channels& groups() const { return _groups; }
    ChannelState& stereo() const { return *_channels.back(); }
    /// The channel of that identity, also where the console's size does not show it; null where none exists.
    ChannelState* channelState(ChannelKind kind) const;
    /// The inputs that the size shows.
    Channels visibleInputs() const;
    /// Visible inputs, groups, stereo: the order of everything that walks all channels.
    Channels allVisibleChannels() const;
    bool isVisible(const ChannelState& channel) const;

    QProperty<std::int64_t> messageCount{0}; ///< Control Changes handed over, understood or not
    QProperty<QString> lastMessage{QStringLiteral("No MIDI received yet")};

    /// Applies one Control Change from the console: `cc` 0 to 127, `value` 0 to 127. In arrival order.
    void handle(int cc, int value) { handle(_clock.now(), cc, value); }
    void handle(Uptime stamp, int cc, int value);
    /// Writes what neither the console nor playback changes. Controllers of no channel are ignored.
    void apply(int cc, int value, ChangeOrigin origin);
    /// Called after each change made by `handle` and `apply`, also to an equal value.
    std::function<void(const ConsoleChange&)> onChange;
    /// Called after a Zero without send has changed the screen alone, NULL targets included.
    std::function<void()> onScreenZeroed;

    /// One fader message of the last half second.
    struct RecentFader {
        QString id; ///< of the channel
        Uptime at;
    };
    /// Oldest first.
    const std::deque<RecentFader>& recentFaderChannelIDs() const { return _recentFaders; }
    /// True while the console transmits its whole state: 16 different faders reported within half a second.
    /// Ends with the first fader message after half a second of silence.
    QProperty<bool> isReceivingStateDump{false};
    QProperty<Uptime> lastFaderMessageAt{distantPast};

private:
    ChannelState* write(int cc, int value);
    void noteFaderMessage(ChannelState& channel, int value);
    void forgetRecentFaders(Uptime before);

    const UptimeClock& _clock;
    std::vector<std::unique_ptr<ChannelState>> _channels; // inputs, groups, stereo
    Channels _inputs;
    Channels _groups;
    std::deque<RecentFader> _recentFaders;
    std::unordered_map<QString, int> _recentCounts; // entries of _recentFaders a channel id, none of them 0
};

} // namespace tessik
