#include "TessikKit/MIDI/MTCClock.h"

namespace tessik {
namespace {

/// A payload is a quarter frame's data byte or, with this bit, the position bytes of a full frame.
constexpr std::uint64_t fullFrameFlag = std::uint64_t(1) << 32;

/// A run with a longer pause may span two places on the tape. Even at an eighth of its speed, quarter frames come more
/// often than this.
constexpr Uptime longestPause = std::chrono::milliseconds(100);

std::uint64_t uptimeNanoseconds(const UptimeClock& clock) { return std::uint64_t(clock.now().count()); }

} // namespace

MTCClock::MTCClock(MIDIService& service, const QString& clientName, const UptimeClock& clock)
    : connection(service, clientName, [this](const MIDIWord& word) { receive(word); }),
      lastUpdateHostTime(uptimeNanoseconds(clock)),
      _clock(clock) {
    connection.setSysExHandler(
        [this](Uptime stamp, std::span<const std::uint8_t> sysEx) { receiveSysEx(stamp, sysEx); });
    connection.setTaskHandler([this](Uptime stamp, std::uint64_t payload) {
        if (payload & fullFrameFlag)
            handleFullFrame(MTCDecoder::fullFramePosition(std::uint32_t(payload)));
        else
            handleQuarterFrame(stamp, std::uint8_t(payload));
    });
    connection.setDataLostHandler([this] { decoder = {}; });

    _watchdog.setTimerType(Qt::PreciseTimer);
    _watchdog.setInterval(250);
    _watchdog.callOnTimeout([this] { checkStopped(); });
    _watchdog.start();
}

void MTCClock::receive(const MIDIWord& word) {
    if (word.messageType == 1 && word.status == 0xF1) connection.submit(word.stamp, std::uint64_t(word.data1));
}

void MTCClock::receiveSysEx(Uptime stamp, std::span<const std::uint8_t> sysEx) {
    if (const std::optional<std::uint32_t> bytes = MTCDecoder::fullFrameBytes(sysEx))
        connection.submit(stamp, fullFrameFlag | *bytes);
}

void MTCClock::handleQuarterFrame(Uptime stamp, std::uint8_t dataByte) {
    if (stamp - _lastQuarterFrameStamp > longestPause) {
        decoder = {};
        _quarterFramesSince = stamp;
    }
    _lastQuarterFrameStamp = stamp;
    const std::optional<TimecodePosition> completed = decoder.handleQuarterFrame(dataByte);
    _lock.quarterFrame(stamp, dataByte >> 4 & 7, completed);
    if (_lock.isTelling()) _toldUntil = stamp;
    if (!completed) return;
    currentPosition = completed;
    isRunning = true;
    lastUpdateHostTime = uptimeNanoseconds(_clock);
}

void MTCClock::handleFullFrame(const TimecodePosition& position) {
    decoder = {};
    _lock.reset();
    currentPosition = position;
    fullFrame();
}

void MTCClock::checkStopped() {
    if (!isRunning.value()) return;
    if (uptimeNanoseconds(_clock) - lastUpdateHostTime.value() < 500'000'001) return;
    _lock.stop();
    isRunning = false;
}

} // namespace tessik
