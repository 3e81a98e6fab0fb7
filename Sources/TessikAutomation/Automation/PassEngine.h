#pragma once

#include "TessikAutomation/Automation/AutomationMode.h"
#include "TessikAutomation/Automation/PassIndex.h"
#include "TessikAutomation/Automation/PassStore.h"
#include "TessikAutomation/Automation/PlaybackOutput.h"
#include "TessikAutomation/Automation/TakeRecorder.h"
#include "TessikAutomation/Automation/TapeFollower.h"
#include "TessikAutomation/Automation/UpdateRides.h"
#include "TessikAutomation/Desk/DeskHands.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Snapshots/SnapshotStore.h"
#include "TessikKit/Models/Published.h"

#include <bitset>

namespace tessik {

/// The session's automation: the armed mode, the pass being played and the take being recorded.
///
/// A take waiting for its name is what plays, so that it is heard before it is kept. The selected pass plays when no
/// take waits, and when the user compares.
///
/// While a mode is armed it looks, tick by tick, at the tape and at what has changed on the console since, records and
/// plays. Main thread only.
class PassEngine {
public:
    PassEngine(ConsoleModel& consoleModel, MTCClock& mtcClock, MIDIOutputManager& midiOutputManager,
               const SnapshotStore& snapshotStore, const UptimeClock& uptime = UptimeClock::system(),
               WallClock wallClock = currentSecond);

    /// Leaving the mode ends a take under way.
    QProperty<AutomationMode> mode{AutomationMode::off};

    Published<bool, PassEngine> nullEnabled{false}; ///< see `setNullEnabled`
    Published<std::optional<AutomationPass>, PassEngine> selectedPass{std::nullopt};
    /// The take being recorded, still without its events, or a finished one waiting for its name.
    Published<std::optional<AutomationPass>, PassEngine> recordingPass{std::nullopt};
    Published<bool, PassEngine> isComparing{false}; ///< see `compare`
    /// Derived: the finished take that waits for its name.
    Published<std::optional<AutomationPass>, PassEngine> waitingTake;
    /// Derived: what READ plays, UPDATE rides over and NULL leads to.
    Published<std::optional<AutomationPass>, PassEngine> playedPass;
    Published<qsizetype, PassEngine> recordedEventCount{0}; ///< of the take being recorded, or the last one
    Published<bool, PassEngine> isRolling{false};           ///< timecode runs and a mode is armed
    /// An armed READ or UPDATE does nothing because the played pass and the timecode differ in frame rate.
    Published<bool, PassEngine> hasFrameRateMismatch{false};

    /// Visible channels about which nothing was ever received or recalled.
    int unsyncedChannelCount() const;
    bool isRecording() const { return _isRecording.value(); }

    /// NULL keeps playback off the faders on screen, so that their arrows lead the hands to the automation. Acts in
    /// READ and UPDATE; takes effect on every call, even with an equal value.
    void setNullEnabled(bool enabled);
    /// Selects the pass to play, even while a take waits, and shows its starting state. None leaves the screen alone,
    /// and leaves READ and UPDATE if nothing is left to play.
    void select(const std::optional<AutomationPass>& pass);
    /// Plays the selected pass in place of the waiting take, or the take again.
    void compare(bool withSelected);
    /// Stores the take under any name and selects it. Returns it; none if no take waits.
    std::optional<AutomationPass> finishRecording(const QString& name, PassStore& store);
    /// Drops the take, even one being recorded. Leaves READ and UPDATE if nothing is left to play.
    void discardTake();
    /// Brings a discarded take back to wait again. False if another is being recorded or waits.
    bool restoreTake(const AutomationPass& take);
    /// New or Open replaced the session: clears the selection. A take stays, and waits.
    void noteSessionReplaced();

    /// Must be set, to store the take: called with one still waiting under its proposed name when the next begins. If
    /// UPDATE rides over it, it has been selected already.
    std::function<void(const AutomationPass&)> onTakeSuperseded;
    /// The machine was told to stop: the stop that follows is no dropout, and a play soon after it no continuation.
    void noteStopSent();
    /// The take being recorded or waiting, for recovery.
    std::optional<PendingTake> pendingTake() const;

    /// Looks at everything once. The engine's own timers call it while a mode is armed; tests call it themselves.
    void tick();

private:
    void noteModeChange();
    void applyNull();
    void noteFullFrame();
    void followPlayedPass();
    void leaveModeWithoutPass();
    std::optional<QList<ChannelSnapshot>> baselineState() const;
    ControllerValues baselineLanes() const;
    void applyBaselineToConsole();

    void beginRoll();
    void endRoll();
    void resumeRoll();
    void beginTake();
    PendingTake newTake() const;
    void endTake();
    void abandonRoll();

    void consumeChanges();
    void consume(ConsoleChange change);
    void answerHand(const ConsoleChange& change, std::optional<int> faderBefore, std::optional<int> laneBefore);
    std::optional<int> rideStart(int faderCC, std::optional<int> faderBefore);
    void takeBackRides(Uptime dumpStamp);
    void settleTake();

    bool isPlayable() const;
    bool isPlaying() const { return _tape.isRolling() && _hasAssertedInitialState && isPlayable(); }
    std::int64_t offsetOf(double frame) const;
    int output(int cc) const;
    void play(Uptime now);
    void assertOutputs();
    void recordRide(std::int64_t offset, int cc);

    std::optional<TimecodePosition> position() const;
    void refreshNullTargets();
    void showHand(int faderCC);
    void showHands();
    void noteScreenZeroed();
    void clearNullTargets();
    void armEdgeTimer(Uptime now);

    ConsoleModel& _consoleModel;
    MTCClock& _mtcClock;
    const SnapshotStore& _snapshotStore;
    const UptimeClock& _uptime;
    const WallClock _wallClock;

    AutomationMode _mode = AutomationMode::off; // as the engine acts; `mode` may be ahead while its observers run
    TapeFollower _tape;
    std::vector<ConsoleChange> _changes; // since the last tick
    std::vector<int> _owed;              // lanes that the last of these changes took over from the automation
    std::vector<int> _covered;           // faders whose hand a change hid on a held screen
    DeskHands _hands;
    PlaybackOutput _output;
    PassIndex _index; // of the played pass
    std::optional<AutomationPass> _indexed;
    PassCursor _cursor{_index};
    UpdateRides _rides;
    std::bitset<MIDIChannelMapping::controllerCount> _hasMet; // faders whose hand has met its NULL target
    TakeRecorder _recorder;
    QProperty<bool> _isRecording{false};
    Uptime _stopSentAt = distantPast;
    std::optional<AutomationMode> _suspendedMode; // of a take ended by a stop that may yet prove a dropout

    bool _hasAssertedInitialState = false; // and thus the cursor is where the pass plays
    bool _isAssertionDue = false;          // again, for what happened in between
    std::int64_t _offset = 0;              // into the take or the pass at the last tick of the roll
    std::optional<Uptime> _dumpAt;         // the last message of a dump during the roll
    bool _nullsStale = false;
    std::optional<std::int64_t> _lastNullRefreshFrames;

    QTimer _timer;
    QTimer _edgeTimer;
    QPropertyNotifier _modeNotifier;
    QPropertyNotifier _destinationNotifier;
    QPropertyNotifier _sizeNotifier;
    QPropertyNotifier _playedNotifier;
    Signal<const ConsoleChange&>::Connection _consoleListener;
    Signal<>::Connection _zeroListener;
    Signal<>::Connection _fullFrameListener;
};

} // namespace tessik
