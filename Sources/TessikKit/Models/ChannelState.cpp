#include "TessikKit/Models/ChannelState.h"

#include "TessikKit/Models/FaderDBCalibration.h"

namespace tessik {

ChannelSwitches ChannelState::switches() const {
    return {monMuted.value(), auxMuted.value(), eqOn.value(), chanMuted.value()};
}

ChannelSwitches ChannelState::switchesWith(Switch which, bool on) const {
    const auto state = [&](Switch each) { return each == which ? on : (this->*each).value(); };
    return {.monMuted = state(&ChannelState::monMuted),
            .auxMuted = state(&ChannelState::auxMuted),
            .eqOn = state(&ChannelState::eqOn),
            .chanMuted = state(&ChannelState::chanMuted)};
}

ChannelState::NullMatch ChannelState::nullMatch() const {
    const std::optional<int> target = nullTarget.value();
    return target ? nullMatch(faderValue.value(), *target) : NullMatch::none;
}

ChannelState::NullMatch ChannelState::nullMatch(int fader, int target) {
    const std::optional<double> is = FaderDBCalibration::decibels(fader);
    const std::optional<double> wanted = FaderDBCalibration::decibels(target);
    const bool comparable = is && wanted;
    const double difference = comparable ? *is - *wanted : fader - target;
    const double tolerance = comparable ? 0.5 : 2.0;
    if (difference < -tolerance) return NullMatch::needsUp;
    if (difference > tolerance) return NullMatch::needsDown;
    return NullMatch::matched;
}

} // namespace tessik
