#include "TessikAutomation/Session/Problems.h"

#include "TessikAutomation/MIDI/PortChoice.h"

namespace tessik {
namespace {

using Offer = Problem::Offer;

void addPortProblems(std::vector<Problem>& problems, const ProblemState::Port& port) {
    if (port.isMissing)
        problems.push_back({QStringLiteral("%1 is gone").arg(port.label),
                            QStringLiteral("Its device was unplugged or switched off. It is connected again as soon as "
                                           "it is back; or choose another port in the settings."),
                            Offer::settings});
    else if (port.isForgotten)
        problems.push_back({QStringLiteral("%1 is not connected").arg(port.label),
                            QStringLiteral("The port that you chose was not there when the program started. Connect "
                                           "its device and choose it in the settings, or choose None."),
                            Offer::settings});
    else if (port.isCut)
        problems.push_back({QStringLiteral("%1 was disconnected").arg(port.label),
                            QStringLiteral("Another program took its connection out twice, as a patch bay does. Make "
                                           "it there again, or choose the port in the settings once more."),
                            Offer::settings});
    else if (port.refusal == midiPortHeld)
        problems.push_back({QStringLiteral("%1 is held by another program").arg(port.label),
                            QStringLiteral("That program has the port for itself alone. Close it, and the port is "
                                           "taken up at once; or choose another port in the settings."),
                            Offer::settings});
    else if (port.refusal != 0 && port.isInput)
        problems.push_back({QStringLiteral("%1 cannot be connected").arg(port.label),
                            QStringLiteral("The system refused it (status %1). It is tried again whenever a port comes "
                                           "or goes: unplug the device and plug it in again, or choose another port in "
                                           "the settings.")
                                .arg(port.refusal),
                            Offer::settings});
    else if (port.refusal != 0)
        problems.push_back({QStringLiteral("%1 does not take messages").arg(port.label),
                            QStringLiteral("The system refused what was sent (status %1). Unplug the device and plug "
                                           "it in again, or choose another port in the settings.")
                                .arg(port.refusal),
                            Offer::settings});
    else if (port.isAmbiguous)
        problems.push_back({QStringLiteral("%1 may be the wrong one of two").arg(port.label),
                            QStringLiteral("Two ports have this name, and the system does not tell which is which: "
                                           "they may have changed places. Try it, and choose the other one in the "
                                           "settings if it is."),
                            Offer::settings});
    else if (port.isAnotherDevice)
        problems.push_back({QStringLiteral("%1 may be another device").arg(port.label),
                            QStringLiteral("It has the name of the one that you chose, but is plugged in elsewhere or "
                                           "is another unit. Try it; if it is right, choose it in the settings once "
                                           "more."),
                            Offer::settings});
}

ProblemState::Port portState(const QString& label, const PortChoice& choice, const PortCable& cable,
                             const MIDIDestinationPort* output = nullptr) {
    const std::optional<std::int32_t> id = choice.selected.value();
    const MIDIStatus refusal = cable.refusal.value();
    return {.label = label,
            .isInput = !output,
            .isMissing = id && !choice.isListed(*id),
            .isForgotten = !id && SavedSettings::uniqueID(choice.key),
            .refusal = refusal == 0 && output ? output->refusal.value() : refusal,
            .isCut = cable.isCut.value(),
            .isAmbiguous = choice.isAmbiguous(),
            .isAnotherDevice = choice.isAnotherDevice()};
}

} // namespace

std::vector<Problem> problemsIn(const ProblemState& state) {
    std::vector<Problem> problems;
    if (state.isInputLost)
        problems.push_back({QStringLiteral("MIDI In dropped messages"),
                            QStringLiteral("The screen and the desk may differ. Recall a scene on the desk to hear "
                                           "every value again.")});
    if (state.isTimecodeLost)
        problems.push_back({QStringLiteral("MTC Source dropped messages"),
                            QStringLiteral("Timecode had a gap: what was played or recorded then may be off by some "
                                           "frames. Locate before it and do it again; this goes when the tape "
                                           "starts.")});
    if (state.overtaken > 0)
        problems.push_back({QStringLiteral("MIDI In comes too fast"),
                            QStringLiteral("%1 messages gave way to newer ones of the same control before the program "
                                           "could take them. The screen shows the latest; a pass recorded meanwhile "
                                           "lacks moves. See what floods MIDI In.")
                                .arg(state.overtaken)});
    if (state.isLoop)
        problems.push_back({QStringLiteral("What goes out comes back in"),
                            QStringLiteral("MIDI Out and MIDI In are joined by a cable, a patch bay or a through port, "
                                           "or the desk echoes. Choose the desk's own ports in the settings, or switch "
                                           "its echo off. Until then, what comes back is not taken for a hand's."),
                            Offer::settings});
    if (!state.noMIDI.isEmpty())
        problems.push_back({QStringLiteral("There is no MIDI on this machine"),
                            QStringLiteral("%1. In a terminal, “sudo modprobe snd-seq” loads the ALSA sequencer; then "
                                           "start the program again. The rig works without it.")
                                .arg(state.noMIDI),
                            Offer::rig});
    else
        for (const ProblemState::Port& port : state.ports)
            addPortProblems(problems, port);
    if (state.mismatch)
        problems.push_back({QStringLiteral("The pass is not played"),
                            QStringLiteral("It was recorded at %1, but timecode runs at %2. Set the recorder to %1, or "
                                           "select another pass.")
                                .arg(description(state.mismatch->pass), description(state.mismatch->timecode))});
    if (!state.leftOut.isEmpty())
        problems.push_back({QStringLiteral("Part of the session's file could not be read"),
                            QStringLiteral("These parts are not in the session: %1. Save under another name, and "
                                           "the file stays as it is.")
                                .arg(state.leftOut)});
    if (!state.recoveryProblem.isEmpty())
        problems.push_back({QStringLiteral("Recovery copies cannot be written"),
                            QStringLiteral("%1 Save the session yourself, and often, until this is gone.")
                                .arg(state.recoveryProblem)});
    if (!state.settingsProblem.isEmpty())
        problems.push_back({QStringLiteral("Settings cannot be saved"),
                            QStringLiteral("%1 What you choose holds until the program ends. Make room on the disk, "
                                           "or make the file writable.")
                                .arg(state.settingsProblem)});
    return problems;
}

ProblemWatch::ProblemWatch(const Objects& objects) : _objects(objects) {
    const auto watch = [this](auto& property) { _observers.push_back(property.addNotifier([this] { lookSoon(); })); };
    const auto watchCable = [watch](PortCable& cable) {
        watch(cable.refusal);
        watch(cable.isCut);
    };
    for (MIDIInputConnection* input : {&objects.desk.input.connection, &objects.mtcClock.connection}) {
        watch(input->availableSources);
        watch(input->connectedSourceID);
        watchCable(input->cable);
    }
    for (MIDIDestinationPort* output : {&objects.desk.output.port, &objects.transport.port}) {
        watch(output->availableDestinations);
        watch(output->connectedDestinationID);
        watch(output->refusal);
        watchCable(output->cable);
    }
    watch(objects.desk.output.isLoop);
    watch(objects.passEngine.hasFrameRateMismatch);
    watch(objects.passEngine.playedPass);
    watch(objects.session.leftOut);
    watch(objects.session.recoveryProblem);
    watch(SavedSettings::lastWrite());
    watch(noMIDI);
    // What was lost is made good by a desk that tells everything, or by another desk.
    MIDIInputConnection& desk = objects.desk.input.connection;
    const auto setInputLost = [this, &desk](bool isLost) {
        _isInputLost = isLost;
        if (!isLost) _overtakenBefore = desk.overtakenCount.value();
        lookSoon();
    };
    watch(desk.overtakenCount);
    _observers.push_back(desk.dataLostCount.addNotifier([setInputLost] { setInputLost(true); }));
    _observers.push_back(desk.connectedSourceID.addNotifier([setInputLost] { setInputLost(false); }));
    _observers.push_back(objects.desk.model.isReceivingStateDump.addNotifier([this, setInputLost] {
        if (_objects.desk.model.isReceivingStateDump.value()) setInputLost(false);
    }));
    MTCClock& clock = objects.mtcClock;
    const auto setTimecodeLost = [this](bool isLost) {
        _isTimecodeLost = isLost;
        lookSoon();
    };
    _observers.push_back(clock.connection.dataLostCount.addNotifier([setTimecodeLost] { setTimecodeLost(true); }));
    _observers.push_back(clock.connection.connectedSourceID.addNotifier([setTimecodeLost] { setTimecodeLost(false); }));
    _observers.push_back(clock.isRunning.addNotifier([&clock, setTimecodeLost] {
        if (clock.isRunning.value()) setTimecodeLost(false);
    }));
    lookSoon();
}

void ProblemWatch::lookSoon() {
    if (std::exchange(_isLookDue, true)) return;
    QMetaObject::invokeMethod(
        &_context,
        [this] {
            _isLookDue = false;
            problems = problemsIn(state());
        },
        Qt::QueuedConnection);
}

ProblemState ProblemWatch::state() const {
    using namespace SavedSettings;
    MIDIInputConnection& input = _objects.desk.input.connection;
    MIDIInputConnection& timecode = _objects.mtcClock.connection;
    MIDIDestinationPort& output = _objects.desk.output.port;
    MIDIDestinationPort& transport = _objects.transport.port;
    ProblemState state{
        .noMIDI = noMIDI.value(),
        .ports = {portState(QStringLiteral("MIDI In"), sourceChoice(Key::consoleSourceID, input), input.cable),
                  portState(QStringLiteral("MIDI Out"), destinationChoice(Key::midiOutDestinationID, output),
                            output.cable, &output),
                  portState(QStringLiteral("MTC Source"), sourceChoice(Key::timecodeSourceID, timecode),
                            timecode.cable),
                  portState(QStringLiteral("Send To"), destinationChoice(Key::transportDestinationID, transport),
                            transport.cable, &transport)},
        .isLoop = _objects.desk.output.isLoop.value(),
        .isInputLost = _isInputLost,
        .isTimecodeLost = _isTimecodeLost,
        .overtaken = input.overtakenCount.value() - _overtakenBefore,
        .mismatch = {},
        .leftOut = _objects.session.leftOut.value(),
        .recoveryProblem = _objects.session.recoveryProblem.value(),
        .settingsProblem = lastWrite().value().problem};
    const std::optional<AutomationPass>& pass = _objects.passEngine.playedPass.value();
    const std::optional<TimecodePosition>& position = _objects.mtcClock.currentPosition.value();
    if (_objects.passEngine.hasFrameRateMismatch.value() && pass && position)
        state.mismatch = ProblemState::FrameRates{pass->frameRate, position->frameRate};
    return state;
}

} // namespace tessik
