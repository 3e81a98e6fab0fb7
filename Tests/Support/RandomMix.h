#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Snapshots/Snapshot.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <random>

namespace tessik::test {

/// Random faders, switches and records of them, the same for the same seed.
class RandomMix {
protected:
    RandomMix(std::uint32_t seed, MTCFrameRate rate, std::vector<ChannelKind> channels, WallClock now)
        : _tapeRate(rate),
          _random(seed),
          _channels(std::move(channels)),
          _now(std::move(now)),
          _firstFrame(upTo(4) ? 3000 : labelsPerDay(rate) - 500) {}

    int upTo(int n) { return int(_random() % std::uint32_t(n)); }
    /// Mostly one of a few, so that things collide.
    ChannelKind someChannel() { return _channels[std::size_t(upTo(5) ? upTo(5) * 9 : upTo(int(_channels.size())))]; }
    int someFader() { return upTo(4) ? 40 + upTo(60) : upTo(128); }
    ChannelSwitches someSwitches() { return MIDIChannelMapping::decodeSwitchByte(std::uint8_t(upTo(128))); }
    std::int64_t somewhere() { return _firstFrame - 100 + upTo(1200); }
    QList<ChannelSnapshot> randomState() {
        QList<ChannelSnapshot> state;
        for (const ChannelKind kind : _channels) {
            const ChannelSwitches switches = someSwitches();
            state.append(
                {kind, someFader(), switches.monMuted, switches.auxMuted, switches.eqOn, switches.chanMuted, {}});
        }
        return state;
    }
    Snapshot randomSnapshot() {
        return {.id = QUuid::createUuid(), .name = {}, .createdAt = _now(), .channels = randomState()};
    }
    AutomationPass randomPass() {
        const MTCFrameRate passRate = upTo(8) ? _tapeRate : MTCFrameRate(upTo(4));
        AutomationPass pass{.id = QUuid::createUuid(),
                            .name = {},
                            .createdAt = _now(),
                            .frameRate = passRate,
                            .startTimecode = TimecodePosition::fromTotalFrames(passRate, _firstFrame + upTo(200)),
                            .events = {}};
        if (upTo(4)) pass.initialState = randomState();
        for (std::int64_t offset = 0; offset < 1500; offset += upTo(40))
            pass.events.append(
                {offset, someChannel(),
                 upTo(4) ? PassEventValue::fader(someFader()) : PassEventValue::switches(someSwitches())});
        return pass;
    }

    const MTCFrameRate _tapeRate;

private:
    std::minstd_rand _random;
    const std::vector<ChannelKind> _channels;
    const WallClock _now;

protected:
    const std::int64_t _firstFrame; // of the tape: in some mixes, midnight follows soon
};

} // namespace tessik::test
