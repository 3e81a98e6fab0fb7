#pragma once

#include "TessikKit/MIDI/MIDIService.h"
#include "TessikKit/MIDI/SysExAssembler.h"
#include "TessikKit/Models/TimecodePosition.h"

#include <condition_variable>
#include <mutex>
#include <random>
#include <thread>

namespace tessik {

struct RecorderSettings {
    MTCFrameRate rate = MTCFrameRate::fps25;
    std::uint8_t deviceID = 0; ///< 0 to 126
    bool answersAllCall = true;
    Uptime jitter{}; ///< a quarter frame leaves up to this much early or late, evenly distributed; under 4 ms
    /// Quarter frames leave only at the ends of audio buffers of this length, as on a computer; 0 for any time.
    Uptime audioBuffer{};
    Uptime slowStart{};       ///< until a starting tape has reached its speed
    bool tellsLocates = true; ///< by a full frame
    std::uint32_t seed = 1;
    double shuttleSpeed = 20; ///< of play
};

/// A hard-disk recorder on two cables, both named "Rig Recorder": obeys MIDI Machine Control and sends its tape's MIDI
/// Time Code. Located during play it keeps playing from there; while it shuttles it sends nothing.
///
/// Its keys and settings may be used from any thread; the timecode leaves from a single thread of its own.
class SimulatedRecorder {
public:
    /// By a thread, on the machine's uptime; or by `advance`, on whatever clock was given.
    enum class Drive : std::uint8_t { thread, manual };
    enum class State : std::uint8_t { stopped, paused, playing, fastForwarding, rewinding };

    explicit SimulatedRecorder(MIDIService& service, const RecorderSettings& settings = {}, Drive drive = Drive::thread,
                               const UptimeClock& clock = UptimeClock::system());
    ~SimulatedRecorder();

    static const QString portName; ///< of the source and of the destination

    // ---- its keys

    void play() { enter(State::playing); }
    void stop() { enter(State::stopped); }
    void pause() { enter(State::paused); }
    void fastForward() { enter(State::fastForwarding); }
    void rewind() { enter(State::rewinding); }
    void recordStrobe(); ///< starts rolling if it is not
    void recordExit();
    void locate(const TimecodePosition& label); ///< and tells where it went in a full frame

    /// 1 is the tape's own speed; must be above 0.
    void setSpeed(double speed);
    void setRate(MTCFrameRate rate); ///< stops and returns to zero: it is another tape
    void setJitter(Uptime jitter);
    /// From now on the tape is late by this much, for which it stands still.
    void slip(Uptime delay);
    /// Sends nothing for that long, while the tape keeps rolling.
    void dropOut(Uptime duration);
    /// The next run of quarter frames gives another rate.
    void misreadRate();

    // ---- what it does

    State state() const;
    bool isRecording() const;
    /// Where the tape is, in frames on the scale of its labels' `totalFrames`.
    double truePosition(Uptime now) const;
    TimecodePosition label(Uptime now) const;

    // ---- for a manual drive

    /// When it next has something to send; none while it does not roll.
    std::optional<Uptime> nextDeadline() const;
    /// Sends what is due.
    void advance(Uptime now);
    /// Lets time pass on `clock`, the one given at construction, and sends everything exactly on time.
    void roll(ManualUptimeClock& clock, Uptime duration);

private:
    void receive(const MIDIEventList& list); // thread of the service
    void obey(std::span<const std::uint8_t> sysEx);
    void obey(std::uint8_t command, std::span<const std::uint8_t> data);

    void enter(State state);
    void enterLocked(State state);
    double tapePosition(Uptime now) const;
    void moveTo(double tapeFrame, Uptime now);
    void scheduleNext();
    double playedSeconds(Uptime since) const;
    Uptime timeToPlay(double seconds) const;
    std::optional<Uptime> deadline() const;
    std::optional<std::vector<std::uint32_t>> takeDue(Uptime now);
    void run();

    MIDIService& _service;
    const RecorderSettings _settings;
    const UptimeClock& _clock;
    MIDIClientRef _client = 0;
    MIDIEndpointRef _source = 0;
    SysExAssembler _sysEx; // thread of the service

    mutable std::mutex _mutex;
    std::condition_variable _changed;
    bool _ending = false;
    MTCFrameRate _rate;
    Uptime _jitter;
    double _playSpeed = 1;
    std::mt19937 _random;
    State _state = State::stopped;
    bool _recording = false;
    double _anchorFrame = 0; // tape frame at `_anchorTime`
    Uptime _anchorTime{};
    Uptime _ramp{};        // from `_anchorTime` until it has its speed
    double _slippedAt = 0; // tape frame until `_slipEnd`
    Uptime _slipEnd = distantPast;
    Uptime _silentUntil = distantPast;
    bool _misreadsRate = false;
    std::int64_t _nextQuarter = 0; // counted from the tape's zero, not wrapped
    Uptime _nextJitter{};
    std::optional<TimecodePosition> _fullFrame; // owed
    std::thread _thread;
};

} // namespace tessik
