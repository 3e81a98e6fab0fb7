#pragma once

#include "Support/AutomationRig.h"

#include <gmock/gmock.h>

namespace tessik::test {

using namespace std::chrono_literals;
using testing::ElementsAre;

inline const ChannelKind in1 = ChannelKind::input(1);
inline const ChannelKind in2 = ChannelKind::input(2);
inline const ChannelKind in3 = ChannelKind::input(3);
inline constexpr ChannelSwitches muted{.chanMuted = true};
inline constexpr std::int64_t passStart = 1000; // frames; the rig's tape runs at 25 a second

inline TimedEvent fader(std::int64_t offset, ChannelKind kind, int value) {
    return {offset, kind, PassEventValue::fader(value)};
}
inline TimedEvent switches(std::int64_t offset, ChannelKind kind, ChannelSwitches value) {
    return {offset, kind, PassEventValue::switches(value)};
}

/// Every channel at `level` with all switches off.
inline QList<ChannelSnapshot> flat(int level) {
    const ConsoleModel model;
    QList<ChannelSnapshot> state;
    for (const ChannelState* channel : model.allVisibleChannels())
        state.append({.kind = channel->kind, .faderValue = level});
    return state;
}

inline AutomationPass pass(QList<TimedEvent> events, int level = 50, MTCFrameRate rate = MTCFrameRate::fps25) {
    return {.id = QUuid::createUuid(),
            .name = QStringLiteral("Pass"),
            .createdAt = currentSecond(),
            .frameRate = rate,
            .startTimecode = TimecodePosition::fromTotalFrames(rate, passStart),
            .events = std::move(events),
            .initialState = flat(level)};
}

/// The fader events of one channel, as (offset, value).
inline std::vector<std::pair<std::int64_t, int>> fadersOf(const AutomationPass& pass, ChannelKind kind) {
    std::vector<std::pair<std::int64_t, int>> found;
    for (const TimedEvent& event : pass.events)
        if (event.kind == kind && event.value.kind() == PassEventValue::Case::fader)
            found.emplace_back(event.frameOffset, int(event.value.fader()));
    return found;
}
inline std::vector<std::pair<std::int64_t, bool>> mutesOf(const AutomationPass& pass, ChannelKind kind) {
    std::vector<std::pair<std::int64_t, bool>> found;
    for (const TimedEvent& event : pass.events)
        if (event.kind == kind && event.value.kind() == PassEventValue::Case::switches)
            found.emplace_back(event.frameOffset, event.value.switches().chanMuted);
    return found;
}

struct PassEngineTest : testing::Test, AutomationRig {
    void arm(AutomationMode mode) { engine.mode = mode; }
    int shown(ChannelKind kind) { return channel(kind).faderValue.value(); }
    std::optional<int> target(ChannelKind kind) { return channel(kind).nullTarget.value(); }
    /// Runs until the tape is a quarter of a frame past an offset into passes made by `pass`.
    void runTo(std::int64_t offset) {
        while (tape.truePosition(uptime.now()) < double(passStart + offset) + 0.25)
            run(1ms);
    }
    const AutomationPass& take() { return *engine.recordingPass.value(); }
    std::int64_t takeStart() { return take().startTimecode.totalFrames(); }
    /// Plays the tape from the start of the passes, or slightly earlier.
    void rollFrom(std::int64_t offset) {
        locate(passStart + offset);
        tape.play();
    }
    /// Rolls over a pass up to its tenth frame.
    void roll(AutomationMode mode, const AutomationPass& over) {
        engine.select(over);
        arm(mode);
        rollFrom(0);
        runTo(10);
    }
};

} // namespace tessik::test
