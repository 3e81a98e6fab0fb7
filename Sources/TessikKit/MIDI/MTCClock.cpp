#include "TessikKit/MIDI/MTCClock.h"

namespace tessik {
namespace {

/// The position bytes of a full frame travel as a word with this bit, which no word of MIDI 1.0 has.
constexpr std::uint32_t fullFrameFlag = std::uint32_t(1) << 31;

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
    connection.setTaskHandler([this](const MIDIWord& word) {
        if (word.word & fullFrameFlag)
            handleFullFrame(MTCDecoder::fullFramePosition(word.word & ~fullFrameFlag));
        else
            handleQuarterFrame(word.stamp, std::uint8_t(word.data1()));
    });
    connection.setDataLostHandler([this] { decoder = {}; });

    _watchdog.setTimerType(Qt::PreciseTimer);
    _watchdog.setInterval(250);
    _watchdog.callOnTimeout([this] { checkStopped(); });
    _watchdog.start();
}

void MTCClock::receive(const MIDIWord& word) {
    if (word.messageType() == 1 && word.status() == 0xF1) connection.submit(word);
}

void MTCClock::receiveSysEx(Uptime stamp, std::span<const std::uint8_t> sysEx) {
    if (const std::optional<std::uint32_t> bytes = MTCDecoder::fullFrameBytes(sysEx))
        connection.submit({stamp, fullFrameFlag | *bytes});
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
