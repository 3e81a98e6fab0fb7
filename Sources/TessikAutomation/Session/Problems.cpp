#include "TessikAutomation/Session/Problems.h"

#include "TessikAutomation/Persistence/PortChoice.h"

namespace tessik {
namespace {

using Offer = Problem::Offer;

void addPortProblems(std::vector<Problem>& problems, const ProblemState::Port& port) {
    if (port.isMissing)
        problems.push_back({QStringLiteral("%1 is gone").arg(port.label),
                            QStringLiteral("Its device was unplugged or switched off. It is taken up again as soon as "
                                           "it is back; or choose another port in the settings."),
                            Offer::settings});
    else if (port.isForgotten)
        problems.push_back({QStringLiteral("%1 is not connected").arg(port.label),
                            QStringLiteral("The port that you chose was not there when the program started. Connect "
                                           "its device and choose it in the settings, or choose None."),
                            Offer::settings});
    else if (port.refusal != 0)
        problems.push_back({QStringLiteral("%1 does not take messages").arg(port.label),
                            QStringLiteral("The system refused what was sent (status %1). Unplug the device and plug "
                                           "it in again, or choose another port in the settings.")
                                .arg(port.refusal),
                            Offer::settings});
}

template <typename Choice>
ProblemState::Port portState(const QString& label, const Choice& choice, MIDIStatus refusal = 0) {
    const std::optional<std::int32_t> id = choice.selected.value();
    return {.label = label,
            .isMissing = id && !choice.isListed(*id),
            .isForgotten = !id && SavedSettings::uniqueID(choice.key),
            .refusal = refusal};
}

} // namespace

std::vector<Problem> problemsIn(const ProblemState& state) {
    std::vector<Problem> problems;
    if (state.isInputLost)
        problems.push_back({QStringLiteral("MIDI In dropped messages"),
                            QStringLiteral("The screen and the desk may differ. Recall a scene on the desk to hear "
                                           "every value again.")});
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
        problems.push_back({QStringLiteral("The selected pass is not played"),
                            QStringLiteral("It was recorded at %1, but timecode runs at %2. Set the recorder to %1, or "
                                           "select another pass.")
                                .arg(description(state.mismatch->pass), description(state.mismatch->timecode))});
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
    for (MIDIInputConnection* input : {&objects.midiManager.connection, &objects.mtcClock.connection}) {
        watch(input->availableSources);
        watch(input->connectedSourceID);
    }
    for (MIDIDestinationPort* output : {&objects.midiOutput.port, &objects.transport.port}) {
        watch(output->availableDestinations);
        watch(output->connectedDestinationID);
        watch(output->refusal);
    }
    watch(objects.passEngine.hasFrameRateMismatch);
    watch(objects.passEngine.selectedPass);
    watch(objects.session.recoveryProblem);
    watch(SavedSettings::lastWrite());
    watch(noMIDI);
    // What was lost is made good by a desk that tells everything, or by another desk.
    const auto setInputLost = [this](bool isLost) {
        _isInputLost = isLost;
        lookSoon();
    };
    MIDIInputConnection& desk = objects.midiManager.connection;
    _observers.push_back(desk.dataLostCount.addNotifier([setInputLost] { setInputLost(true); }));
    _observers.push_back(desk.connectedSourceID.addNotifier([setInputLost] { setInputLost(false); }));
    _observers.push_back(objects.consoleModel.isReceivingStateDump.addNotifier([this, setInputLost] {
        if (_objects.consoleModel.isReceivingStateDump.value()) setInputLost(false);
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
    MIDIDestinationPort& output = _objects.midiOutput.port;
    MIDIDestinationPort& transport = _objects.transport.port;
    ProblemState state{
        .noMIDI = noMIDI.value(),
        .ports = {portState(QStringLiteral("MIDI In"),
                            sourceChoice(Key::consoleSourceID, _objects.midiManager.connection)),
                  portState(QStringLiteral("MIDI Out"), destinationChoice(Key::midiOutDestinationID, output),
                            output.refusal.value()),
                  portState(QStringLiteral("MTC Source"),
                            sourceChoice(Key::timecodeSourceID, _objects.mtcClock.connection)),
                  portState(QStringLiteral("Send To"), destinationChoice(Key::transportDestinationID, transport),
                            transport.refusal.value())},
        .isInputLost = _isInputLost,
        .mismatch = {},
        .recoveryProblem = _objects.session.recoveryProblem.value(),
        .settingsProblem = lastWrite().value().problem};
    const std::optional<AutomationPass>& pass = _objects.passEngine.selectedPass.value();
    const std::optional<TimecodePosition>& position = _objects.mtcClock.currentPosition.value();
    if (_objects.passEngine.hasFrameRateMismatch.value() && pass && position)
        state.mismatch = ProblemState::FrameRates{pass->frameRate, position->frameRate};
    return state;
}

} // namespace tessik
