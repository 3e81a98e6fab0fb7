#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"

namespace tessik {

/// A pass as a Standard MIDI File that any sequencer can show and play: its name, its start as an SMPTE offset, and
/// each move as the Control Change that the desk itself would send.
///
/// The file is type 0 and counts in beats, because many programs read no other time: 120 a minute, divided so that a
/// frame is 100 ticks. At 29.97 drop a beat is the 15 frames that then take 500.5 ms; frames are counted as they
/// elapse, because drop skips labels, not frames. The pass's starting state stands at time 0, the fader and switch byte
/// of each channel, followed by a marker "Take".
namespace PassMIDIFile {

/// `midiChannel` is the desk's, 1 to 16. Empty if a MIDI file cannot express the pass; `error` says why. Events before
/// the start are moved to it; those of channels that do not exist are left out.
QByteArray write(const AutomationPass& pass, int midiChannel, QString& error);

struct Imported {
    std::optional<AutomationPass> pass; ///< new; its name is empty if the file has none
    QString error;                      ///< why there is no pass
    QStringList notes;                  ///< what was left out or interpreted differently, as sentences
};

/// Extracts the desk's controllers from a file, ours or another program's. A file in beats is converted by its tempo to
/// frames at the rate of its SMPTE offset, or at `rateForBeats` if it has none; an event between two frames goes to the
/// nearest.
Imported read(QByteArrayView bytes, int midiChannel, MTCFrameRate rateForBeats, const QDateTime& createdAt);

} // namespace PassMIDIFile
} // namespace tessik
