#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/BackgroundWriter.h"
#include "TessikAutomation/Views/Session/WidgetSessionDialogs.h"
#include "TessikKit/MIDI/MTCClock.h"

class QUndoStack;

namespace tessik {

/// Passes to and from MIDI files: asks where, does the work on a thread of its own, and tells what came of it.
class PassFiles {
public:
    /// An import can be taken back from `history`.
    PassFiles(PassStore& passes, PassEngine& engine, QUndoStack& history, const MIDIOutputManager& output,
              const MTCClock& mtcClock, WidgetSessionDialogs& dialogs)
        : _passes(passes),
          _engine(engine),
          _history(history),
          _output(output),
          _mtcClock(mtcClock),
          _dialogs(dialogs) {}

    /// Its controllers go to the desk's MIDI channel.
    void exportPass(const AutomationPass& pass);
    /// The pass is added to the session; nothing is selected. A file in beats takes the frame rate of the timecode.
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
    std::optional<BackgroundWriter> _writer; // from the first file on; last: its jobs end first
};

} // namespace tessik
