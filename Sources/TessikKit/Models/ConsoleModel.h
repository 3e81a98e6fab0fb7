#pragma once

#include "TessikKit/Models/ChannelState.h"
#include "TessikKit/Models/ConsoleChange.h"
#include "TessikKit/Models/MIDIChannelMapping.h"
#include "TessikKit/Models/Published.h"
#include "TessikKit/Models/Signal.h"

#include <deque>
#include <memory>
#include <vector>

namespace tessik {

/// The mirror of the console's automatable part: 32 inputs, 8 groups and the stereo master, whatever its size. Main
/// thread only.
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
    /// The channel with that identity, even if the console's size does not show it; null if there is none.
    ChannelState* channelState(ChannelKind kind) const;
    /// The channel whose fader or switch byte the controller carries; null if it carries neither.
    ChannelState* channelOf(int cc) const;
    /// The inputs that the size shows.
    Channels visibleInputs() const;
    /// Visible inputs, groups, stereo: the order of everything that goes through all channels.
    Channels allVisibleChannels() const;
    bool isVisible(const ChannelState& channel) const;

    Published<std::int64_t, ConsoleModel> messageCount{0}; ///< Control Changes received, understood or not
    /// The last Control Change understood: "CC7 -> 8 fader = 100".
    QString lastMessage() const;

    // ---- What happens to the console. `cc` and `value` are 0 to 127; a controller of no channel is ignored.

    /// A Control Change came from the console. Call in order of arrival.
    void handle(int cc, int value) { handle(_clock.now(), cc, value); }
    void handle(Uptime stamp, int cc, int value);
    /// So many Control Changes came that newer ones overtook.
    void noteOvertaken(std::int64_t count) { messageCount = messageCount.value() + count; }
    /// A hand moved a control on screen. That says nothing about the desk: the channel stays unsynced.
    void edited(int cc, int value);
    /// A snapshot was recalled. A fader's value is its NULL target too.
    void recalled(int cc, int value);
    /// Every visible channel goes to zero: fader 0, switches off, no NULL target. Sent to the desk it is a change of
    /// the console; otherwise the screen alone shows it. Returns the values.
    ControllerValues zeroed(bool isSent);
    /// Playback put a value on the desk, and the screen shows it: a fader as its NULL target while the faders on screen
    /// are the hands' (`isHeld`).
    void played(int cc, int value, bool isHeld);
    /// Only the screen changes: a pass was selected, or NULL came or went.
    void shown(int cc, int value) { write(cc, value); }
    void setNullTarget(ChannelState& channel, std::optional<int> target);

    /// After each change made by the desk, the screen, a recall or a Zero, even to an equal value.
    Signal<const ConsoleChange&> changed;
    /// After a Zero without send.
    Signal<> screenZeroed;

    /// A fader message of the last half second.
    struct RecentFader {
        QString id; ///< of the channel
        Uptime at;
    };
    /// Oldest first.
    std::vector<RecentFader> recentFaderChannelIDs() const;
    /// True while the console transmits its whole state: 16 different faders reported within half a second. Ends with
    /// the first fader message after half a second of silence.
    Published<bool, ConsoleModel> isReceivingStateDump{false};
    Published<Uptime, ConsoleModel> lastFaderMessageAt{distantPast};

private:
    ChannelState* write(int cc, int value);
    void tell(int cc, int value, ChangeOrigin origin) { changed({_clock.now(), cc, value, origin}); }
    void noteFaderMessage(ChannelState& channel, int cc, int value);
    void forgetRecentFaders(Uptime before);

    const UptimeClock& _clock;
    std::vector<std::unique_ptr<ChannelState>> _channels; // inputs, groups, stereo
    Channels _inputs;
    Channels _groups;
    std::deque<std::pair<int, Uptime>> _recentFaders;                    // controllers
    std::array<int, MIDIChannelMapping::switchCCOffset> _recentCounts{}; // of each of them
    std::size_t _recentChannels = 0;                                     // different ones
    struct Understood {
        int cc, value;
    };
    std::optional<Understood> _last;
};

} // namespace tessik
