#pragma once

#include <QString>

#include <cstdint>

namespace tessik {

/// The most channels of each kind that a console of any size has.
inline constexpr int maxInputs = 32;
inline constexpr int groupCount = 8;
inline constexpr int channelCount = maxInputs + groupCount + 1;

/// The identity of one automatable channel: an input strip (1 to 32), a group (1 to 8) or the stereo master. A number
/// out of range is a valid identity that names no channel.
class ChannelKind {
public:
    enum class Case : std::uint8_t { input, group, stereo };

    static constexpr ChannelKind input(std::int64_t number) { return {Case::input, number}; }
    static constexpr ChannelKind group(std::int64_t number) { return {Case::group, number}; }
    static constexpr ChannelKind stereo() { return {Case::stereo, 0}; }

    constexpr Case kind() const { return _case; }
    /// The input's or group's number, counted from 1; 0 for stereo.
    constexpr std::int64_t number() const { return _number; }

    /// The key of all per-channel data: "input-7", "group-3", "stereo".
    QString id() const;
    /// The short name on the strip: "7", "G3", "ST".
    QString displayName() const;

    friend constexpr bool operator==(const ChannelKind&, const ChannelKind&) = default;

private:
    constexpr ChannelKind(Case kind, std::int64_t number) : _number(number), _case(kind) {}

    std::int64_t _number;
    Case _case;
};

} // namespace tessik
