#include "TessikRig/SimulatedRecorder.h"

#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikRig/TapeTimecode.h"

#include <cmath>
#include <ctime>

namespace tessik {
namespace {

// MIDI Machine Control
constexpr std::uint8_t allCall = 0x7F;
constexpr std::uint8_t machineControlCommand = 0x06;
constexpr std::uint8_t commandLocate = 0x44;
constexpr std::uint8_t locateTarget = 0x01;
/// Commands from here to 0x77 are followed by the number of their data bytes.
constexpr std::uint8_t firstCommandWithData = 0x40;

/// Short, so that a key pressed in the meantime responds at once.
constexpr Uptime longestSleep = std::chrono::milliseconds(20);

void sleepUntil(Uptime deadline) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(deadline);
    const timespec until{.tv_sec = time_t(seconds.count()), .tv_nsec = long((deadline - seconds).count())};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

} // namespace

const QString SimulatedRecorder::portName = QStringLiteral("Rig Recorder");

SimulatedRecorder::SimulatedRecorder(MIDIService& service, const RecorderSettings& settings, Drive drive,
                                     const UptimeClock& clock)
    : _service(service),
      _settings(settings),
      _clock(clock),
      _rate(settings.rate),
      _jitter(settings.jitter),
      _random(settings.seed),
      _anchorTime(clock.now()) {
    MIDIEndpointRef destination = 0;
    _service.createClient(portName, nullptr, _client);
    _service.createSource(_client, portName, _source);
    _service.createDestination(
        _client, portName, [this](const MIDIEventList& list) { receive(list); }, destination);
    if (drive == Drive::thread) _thread = std::thread([this] { run(); });
}

SimulatedRecorder::~SimulatedRecorder() {
    {
        const std::lock_guard lock(_mutex);
        _ending = true;
    }
    _changed.notify_all();
    if (_thread.joinable()) _thread.join();
    _service.disposeClient(_client);
}

// ---- Machine Control

void SimulatedRecorder::receive(const MIDIEventList& list) {
    if (list.dataLost) _sysEx.reset();
    for (const MIDIEventPacket& packet : list.packets) {
        for (std::size_t i = 0; i + 1 < packet.words.size(); ++i) {
            if (packet.words[i] >> 28 != 3) continue;
            if (const auto message = _sysEx.take(packet.words[i], packet.words[i + 1])) obey(*message);
            ++i;
        }
    }
}

void SimulatedRecorder::obey(std::span<const std::uint8_t> sysEx) {
    if (sysEx.size() < 4 || sysEx[0] != 0x7F || sysEx[2] != machineControlCommand) return;
    if (sysEx[1] != _settings.deviceID && !(sysEx[1] == allCall && _settings.answersAllCall)) return;
    auto commands = sysEx.subspan(3);
    while (!commands.empty()) {
        const std::uint8_t command = commands.front();
        commands = commands.subspan(1);
        std::span<const std::uint8_t> data;
        if (command >= firstCommandWithData) {
            if (commands.empty() || commands.front() >= commands.size()) return; // truncated
            data = commands.subspan(1, commands.front());
            commands = commands.subspan(1 + data.size());
        }
        obey(command, data);
    }
}

void SimulatedRecorder::obey(std::uint8_t command, std::span<const std::uint8_t> data) {
    switch (command) {
    case 0x01: return stop();
    case 0x02: return play();
    case 0x04: return fastForward();
    case 0x05: return rewind();
    case 0x06: return recordStrobe();
    case 0x07: return recordExit();
    case 0x09: return pause();
    case commandLocate:
        if (data.size() < 6 || data[0] != locateTarget) return;
        return locate({.hours = data[1] & 0x1F, .minutes = data[2], .seconds = data[3], .frames = data[4] & 0x1F});
    default: return;
    }
}

// ---- keys and settings

void SimulatedRecorder::enter(State state) {
    const std::lock_guard lock(_mutex);
    enterLocked(state);
}

void SimulatedRecorder::enterLocked(State state) {
    const Uptime now = _clock.now();
    if (state != State::playing) _recording = false;
    if (state == _state) return;
    const double position = tapePosition(now);
    _state = state;
    _ramp = state == State::playing ? _settings.slowStart : Uptime(0);
    moveTo(position, now);
}

void SimulatedRecorder::recordStrobe() {
    const std::lock_guard lock(_mutex);
    enterLocked(State::playing);
    _recording = true;
}

void SimulatedRecorder::recordExit() {
    const std::lock_guard lock(_mutex);
    _recording = false;
}

void SimulatedRecorder::locate(const TimecodePosition& label) {
    const std::lock_guard lock(_mutex);
    if (_state == State::fastForwarding || _state == State::rewinding) _state = State::stopped;
    const std::int64_t frame = TapeTimecode::tapeFrame(_rate, label);
    moveTo(double(frame), _clock.now());
    if (_settings.tellsLocates) _fullFrame = TapeTimecode::label(_rate, frame);
}

void SimulatedRecorder::setSpeed(double speed) {
    const std::lock_guard lock(_mutex);
    const Uptime now = _clock.now();
    _anchorFrame = tapePosition(now);
    _anchorTime = now;
    _playSpeed = speed;
    _ramp = Uptime(0);
    _slipEnd = distantPast;
    _changed.notify_all();
}

void SimulatedRecorder::setRate(MTCFrameRate rate) {
    const std::lock_guard lock(_mutex);
    enterLocked(State::stopped);
    _rate = rate;
    moveTo(0, _clock.now());
}

void SimulatedRecorder::setJitter(Uptime jitter) {
    const std::lock_guard lock(_mutex);
    _jitter = jitter;
}

void SimulatedRecorder::slip(Uptime delay) {
    const std::lock_guard lock(_mutex);
    const Uptime now = _clock.now();
    _slippedAt = tapePosition(now);
    _slipEnd = std::max(now, _slipEnd) + delay;
    _anchorTime += delay;
    _changed.notify_all();
}

void SimulatedRecorder::dropOut(Uptime duration) {
    const std::lock_guard lock(_mutex);
    _silentUntil = _clock.now() + duration;
}

void SimulatedRecorder::misreadRate() {
    const std::lock_guard lock(_mutex);
    _misreadsRate = true;
}

// ---- the tape

/// In tape frames since zero; past 24 hours if it has rolled that far since it was last moved.
double SimulatedRecorder::tapePosition(Uptime now) const {
    if (now < _slipEnd) return _slippedAt;
    double seconds = double((now - _anchorTime).count()) / 1e9;
    switch (_state) {
    case State::stopped:
    case State::paused: seconds = 0; break;
    case State::playing: seconds = playedSeconds(now - _anchorTime) * _playSpeed; break;
    case State::fastForwarding: seconds *= _settings.shuttleSpeed; break;
    case State::rewinding: seconds *= -_settings.shuttleSpeed; break;
    }
    return std::max(0.0, _anchorFrame + seconds * realFramesPerSecond(_rate));
}

/// How many seconds of tape, at normal speed, have passed this long after a start that accelerates evenly.
double SimulatedRecorder::playedSeconds(Uptime since) const {
    const double elapsed = double(since.count()) / 1e9;
    const double ramp = double(_ramp.count()) / 1e9;
    return elapsed < ramp ? elapsed * elapsed / (2 * ramp) : elapsed - ramp / 2;
}

Uptime SimulatedRecorder::timeToPlay(double seconds) const {
    const double ramp = double(_ramp.count()) / 1e9;
    const double elapsed = seconds < ramp / 2 ? std::sqrt(2 * ramp * seconds) : seconds + ramp / 2;
    return Uptime(std::llround(elapsed * 1e9));
}

void SimulatedRecorder::moveTo(double tapeFrame, Uptime now) {
    _anchorFrame = std::fmod(tapeFrame, double(TapeTimecode::framesPerDay(_rate)));
    _anchorTime = now;
    _slipEnd = distantPast;
    _nextQuarter = std::int64_t(std::ceil(_anchorFrame * 4));
    scheduleNext();
    _changed.notify_all();
}

void SimulatedRecorder::scheduleNext() {
    const double evenly = 2.0 * double(_random()) / double(std::mt19937::max()) - 1;
    _nextJitter = Uptime(std::llround(evenly * double(_jitter.count())));
}

std::optional<Uptime> SimulatedRecorder::deadline() const {
    if (_fullFrame) return _anchorTime;
    if (_state != State::playing) return std::nullopt;
    const double seconds = (double(_nextQuarter) / 4 - _anchorFrame) / (realFramesPerSecond(_rate) * _playSpeed);
    Uptime due = _anchorTime + timeToPlay(std::max(0.0, seconds)) + _nextJitter;
    if (const Uptime buffer = _settings.audioBuffer; buffer > Uptime(0)) due += (buffer - due % buffer) % buffer;
    return due;
}

/// The words of one message that is due, without words during a dropout; none if nothing is due.
std::optional<std::vector<std::uint32_t>> SimulatedRecorder::takeDue(Uptime now) {
    const std::optional<Uptime> due = deadline();
    if (!due || *due > now) return std::nullopt;
    std::vector<std::uint32_t> words;
    if (const auto fullFrame = std::exchange(_fullFrame, std::nullopt)) {
        MIDIWords::appendSysEx(words, TapeTimecode::fullFrameMessage(*fullFrame));
    } else {
        const int piece = int(_nextQuarter % 8);
        TimecodePosition label = TapeTimecode::label(_rate, (_nextQuarter - piece) / 4);
        if (piece == 7 && std::exchange(_misreadsRate, false)) label.frameRate = MTCFrameRate(int(_rate) ^ 1);
        words.push_back(MIDIWords::system(0xF1, TapeTimecode::quarterFrameByte(label, piece)));
        ++_nextQuarter;
        scheduleNext();
    }
    if (now < _silentUntil) words.clear();
    return words;
}

SimulatedRecorder::State SimulatedRecorder::state() const {
    const std::lock_guard lock(_mutex);
    return _state;
}

bool SimulatedRecorder::isRecording() const {
    const std::lock_guard lock(_mutex);
    return _recording;
}

double SimulatedRecorder::truePosition(Uptime now) const {
    const std::lock_guard lock(_mutex);
    const double position = tapePosition(now);
    const double whole = std::floor(position);
    return double(TapeTimecode::label(_rate, std::int64_t(whole)).totalFrames()) + position - whole;
}

TimecodePosition SimulatedRecorder::label(Uptime now) const {
    const std::lock_guard lock(_mutex);
    return TapeTimecode::label(_rate, std::int64_t(tapePosition(now)));
}

// ---- sending

std::optional<Uptime> SimulatedRecorder::nextDeadline() const {
    const std::lock_guard lock(_mutex);
    return deadline();
}

void SimulatedRecorder::advance(Uptime now) {
    std::unique_lock lock(_mutex);
    while (const auto words = takeDue(now)) {
        if (words->empty()) continue;
        lock.unlock();
        _service.transmit(_source, *words);
        lock.lock();
    }
}

void SimulatedRecorder::roll(ManualUptimeClock& clock, Uptime duration) {
    const Uptime end = clock.now() + duration;
    for (auto due = nextDeadline(); due && *due <= end; due = nextDeadline()) {
        clock.advance(std::max(Uptime(0), *due - clock.now()));
        advance(clock.now());
    }
    clock.advance(end - clock.now());
}

void SimulatedRecorder::run() {
    std::unique_lock lock(_mutex);
    while (!_ending) {
        const std::optional<Uptime> due = deadline();
        if (!due) {
            _changed.wait(lock);
            continue;
        }
        lock.unlock();
        const Uptime now = _clock.now();
        if (*due > now)
            sleepUntil(std::min(*due, now + longestSleep));
        else
            advance(now);
        lock.lock();
    }
}

} // namespace tessik
