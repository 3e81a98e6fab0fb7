#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/BackgroundWriter.h"
#include "TessikAutomation/Views/Session/WidgetSessionDialogs.h"
#include "TessikKit/MIDI/MTCClock.h"

class QUndoStack;

namespace tessik {

/// Passes to and from MIDI files: asks where, does the work on its own thread, and reports the outcome.
class PassFiles {
public:
    /// `history` can undo an import.
    PassFiles(PassStore& passes, PassEngine& engine, QUndoStack& history, const MIDIOutputManager& output,
              const MTCClock& mtcClock, WidgetSessionDialogs& dialogs)
        : _passes(passes),
          _engine(engine),
          _history(history),
          _output(output),
          _mtcClock(mtcClock),
          _dialogs(dialogs) {}

    /// Its controllers use the desk's MIDI channel.
    void exportPass(const AutomationPass& pass);
    /// Adds the pass to the session without selecting it. A file in beats takes the timecode's frame rate.
    void importPass();

private:
    BackgroundWriter& writer();
    void add(const AutomationPass& pass);
    int midiChannel() const { return std::clamp(_output.midiChannel.value(), 1, 16); }

    PassStore& _passes;
    PassEngine& _engine;
    QUndoStack& _history;
    const MIDIOutputManager& _output;
    const MTCClock& _mtcClock;
    WidgetSessionDialogs& _dialogs;
    std::optional<BackgroundWriter> _writer; // created for the first file; last, so that its jobs end first
};

} // namespace tessik
