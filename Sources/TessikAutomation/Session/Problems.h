#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/Session/SessionController.h"
#include "TessikKit/Models/Published.h"

namespace tessik {

/// Something that keeps the program from doing its job: what it is and what the user can do about it, in plain words.
struct Problem {
    /// What the program itself can do about it.
    enum class Offer : std::uint8_t { nothing, settings, rig };
    QString title;
    QString remedy;
    Offer offer = Offer::nothing;

    friend bool operator==(const Problem&, const Problem&) = default;
};

/// What problems are derived from.
struct ProblemState {
    struct Port {
        QString label; ///< as labelled in the settings
        bool isInput = false;
        bool isMissing = false;       ///< chosen, but absent
        bool isForgotten = false;     ///< remembered, but absent when the program started
        MIDIStatus refusal = 0;       ///< of the connection, or of the last message sent
        bool isCut = false;           ///< another program removed the connection
        bool isAmbiguous = false;     ///< it may have swapped places with another of the same name
        bool isAnotherDevice = false; ///< it may belong to another than the one that was chosen
    };
    struct FrameRates {
        MTCFrameRate pass;
        MTCFrameRate timecode;
    };
    QString noMIDI; ///< why this machine has no MIDI; empty if it has
    std::vector<Port> ports;
    bool isLoop = false;                ///< what goes to the desk comes back
    bool isInputLost = false;           ///< messages from the desk were lost, and it has not sent its whole state since
    bool isTimecodeLost = false;        ///< timecode was lost, and the tape has not started since
    std::int64_t overtaken = 0;         ///< messages from the desk replaced by newer ones, also since then
    std::optional<FrameRates> mismatch; ///< of an armed pass that does not play
    QString leftOut;                    ///< of the session's file, see `SessionController`
    QString recoveryProblem;            ///< why recovery files cannot be written; empty if they can
    QString settingsProblem;            ///< the same for the settings
};

/// Worst first.
std::vector<Problem> problemsIn(const ProblemState& state);

/// Keeps the list of problems up to date, a moment after each change, once everything that belongs to it is done.
class ProblemWatch {
public:
    /// All outlive it.
    struct Objects {
        DeskLink& desk;
        MTCClock& mtcClock;
        TransportManager& transport;
        PassEngine& passEngine;
        SessionController& session;
    };
    explicit ProblemWatch(const Objects& objects);

    QProperty<QString> noMIDI; ///< set by whoever made the MIDI service
    Published<std::vector<Problem>, ProblemWatch> problems;

private:
    ProblemState state() const;
    void lookSoon();

    const Objects _objects;
    bool _isInputLost = false;
    bool _isTimecodeLost = false;
    std::int64_t _overtakenBefore = 0; // the desk sent its whole state
    bool _isLookDue = false;
    QObject _context; // takes the look that is due with it
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
