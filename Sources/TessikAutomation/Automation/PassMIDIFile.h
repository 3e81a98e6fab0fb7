#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"

namespace tessik {

/// A pass as a Standard MIDI File that any sequencer can show and play: its name, its start as an SMPTE offset, and
/// each move as the Control Change that the desk itself would send.
///
/// The file is of type 0 and counts in beats, because many programs read no other time: 120 of them a minute, divided
/// so that a frame is 100 ticks. At 29.97 drop a beat is the 15 frames that then take 500.5 ms; frames are those that
/// really go by, because drop leaves labels out, not frames. The state with which the pass starts stands at time 0,
/// fader and switch byte of each channel, up to a marker "Take".
namespace PassMIDIFile {

/// `midiChannel` is the desk's, 1 to 16. Empty where the pass cannot be told in a MIDI file; `error` says why. Events
/// before the start are put there; those of channels that do not exist are left out.
QByteArray write(const AutomationPass& pass, int midiChannel, QString& error);

struct Imported {
    std::optional<AutomationPass> pass; ///< new; its name is empty where the file has none
    QString error;                      ///< why there is no pass
    QStringList notes;                  ///< what was left out or taken otherwise, as sentences
};

/// Takes the desk's controllers out of a file, its own or another program's. A file that counts in beats is brought by
/// its tempo to frames of the rate at which its SMPTE offset counts, or of `rateForBeats` where it has none; an event
/// between two frames goes to the nearest.
Imported read(QByteArrayView file, int midiChannel, MTCFrameRate rateForBeats, const QDateTime& createdAt);

} // namespace PassMIDIFile
} // namespace tessik
