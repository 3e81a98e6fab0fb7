#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/Session/SessionController.h"

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
        QString label; ///< as the settings call it
        bool isInput = false;
        bool isMissing = false;   ///< chosen, and not there
        bool isForgotten = false; ///< remembered, but not there when the program started
        MIDIStatus refusal = 0;   ///< of the connection, or of the last message sent to it
        bool isCut = false;       ///< another program took the connection out
        bool isAmbiguous = false; ///< it may have changed places with another of its name
    };
    struct FrameRates {
        MTCFrameRate pass;
        MTCFrameRate timecode;
    };
    QString noMIDI; ///< why this machine has no MIDI; empty where it has
    std::vector<Port> ports;
    bool isLoop = false;                ///< what goes to the desk comes back
    bool isInputLost = false;           ///< messages from the desk were lost, and it has not told its whole state since
    std::int64_t overtaken = 0;         ///< messages of the desk that gave way to newer ones, since then too
    std::optional<FrameRates> mismatch; ///< of an armed pass that is not played
    QString leftOut;                    ///< of the session's file, see `SessionController`
    QString recoveryProblem;            ///< why recovery files cannot be written; empty while they can
    QString settingsProblem;            ///< the same of the settings
};

/// The worst first.
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
    QProperty<std::vector<Problem>> problems;

private:
    ProblemState state() const;
    void lookSoon();

    const Objects _objects;
    bool _isInputLost = false;
    std::int64_t _overtakenBefore = 0; // the desk told its whole state
    bool _isLookDue = false;
    QObject _context; // takes the look that is due with it
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
