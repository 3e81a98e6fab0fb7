#pragma once

#include "TessikKit/MIDI/MTCClock.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedRecorder.h"

#include <QCoreApplication>

namespace tessik::test {

/// The rig's recorder with a clock that listens to it, in time that passes only in `roll`.
struct Tape {
    explicit Tape(const RecorderSettings& settings = {})
        : recorder(service, settings, SimulatedRecorder::Drive::manual, uptime),
          clock(service, QStringLiteral("Test Timecode"), uptime) {
        clock.connection.selectSource(service.sources().front().uniqueID);
    }

    /// Lets time go by: the recorder sends on the dot, the clock looks each quarter second whether it stopped.
    void roll(
        Uptime duration, const std::function<void()>& eachMillisecond = [] {}) {
        for (const Uptime end = uptime.now() + duration; uptime.now() < end;) {
            recorder.roll(uptime, std::chrono::milliseconds(1));
            QCoreApplication::sendPostedEvents();
            if (++_milliseconds % 250 == 0) clock.checkStopped();
            eachMillisecond();
        }
    }

    ManualUptimeClock uptime;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, uptime};
    SimulatedRecorder recorder;
    MTCClock clock;

private:
    std::int64_t _milliseconds = 0;
};

} // namespace tessik::test
