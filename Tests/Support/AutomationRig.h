#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikAutomation/Snapshots/SnapshotRecall.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedConsole.h"
#include "TessikRig/SimulatedRecorder.h"

#include <QCoreApplication>

namespace tessik::test {

/// The whole path of the automation with the rig's desk and recorder at its ends, in time that passes only in `run`.
struct AutomationRig {
    explicit AutomationRig(const RecorderSettings& settings = {})
        : tape(service, settings, SimulatedRecorder::Drive::manual, uptime) {
        input.connection.selectSource(idOf(service.sources(), SimulatedConsole::portName()));
        clock.connection.selectSource(idOf(service.sources(), SimulatedRecorder::portName));
        output.setupClient();
        output.refreshDestinations();
        output.selectDestination(idOf(service.destinations(), SimulatedConsole::portName()));
        engine.onTakeSuperseded = [this](const AutomationPass& take) { passes.save(take); };
    }

    static std::int32_t idOf(const std::vector<MIDIEndpoint>& ports, const QString& name) {
        return std::find_if(ports.begin(), ports.end(),
                            [&](const MIDIEndpoint& port) { return port.displayName == name; })
            ->uniqueID.value();
    }

    /// Lets time go by: a message is carried when it is due, the engine looks every 5 ms, the clock for a stop every
    /// 250. Timers do not run, because they keep real time.
    void run(Uptime duration) {
        using namespace std::chrono_literals;
        for (const Uptime end = uptime.now() + duration; uptime.now() < end;) {
            const Uptime pace = desk.isQuiet() && !output.isBusy() ? 5ms : 1ms;
            const Uptime step = uptime.now() + pace - uptime.now() % pace;
            for (auto due = tape.nextDeadline(); due && *due <= step; due = tape.nextDeadline()) {
                uptime.advance(std::max<Uptime>(*due - uptime.now(), 0ns));
                tape.advance(uptime.now());
                QCoreApplication::sendPostedEvents();
            }
            uptime.advance(step - uptime.now());
            desk.advance();
            QCoreApplication::sendPostedEvents();
            output.pump();
            const auto millisecond = uptime.now() / 1ms;
            if (millisecond % 250 == 0) clock.checkStopped();
            if (millisecond % 5 == 0) tick();
            QCoreApplication::sendPostedEvents();
        }
    }
    void roll(Uptime duration) {
        tape.play();
        run(duration);
    }
    /// Stops the tape and waits until that is noticed.
    void stop() {
        tape.stop();
        run(std::chrono::seconds(1));
    }
    void locate(std::int64_t frame) {
        tape.locate(TimecodePosition::fromTotalFrames(MTCFrameRate::fps25, frame));
        run(std::chrono::milliseconds(50));
    }

    ChannelState& channel(ChannelKind kind) { return *model.channelState(kind); }
    ManualUptimeClock uptime;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, uptime};
    SimulatedConsole desk{service, uptime};
    SimulatedRecorder tape;
    DeskLink link{service, QStringLiteral("Test Console"), uptime};
    ConsoleModel& model = link.model;
    MIDIManager& input = link.input;
    MIDIOutputManager& output = link.output;
    DeskEditor& screen = link.editor;
    MTCClock clock{service, QStringLiteral("Test Timecode"), uptime};
    SnapshotStore snapshots;
    ManualSettingsStore manualSettings;
    SnapshotRecall recall{model, manualSettings, output};
    PassStore passes;
    WallClock wallClock = [this] { return dateOfSecond(uptime.now() / std::chrono::seconds(1)); };
    PassEngine engine{model, clock, output, snapshots, uptime, wallClock};
    std::function<void()> tick = [this] { engine.tick(); };
};

} // namespace tessik::test
