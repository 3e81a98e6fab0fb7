// A MIDI file of any bytes: it is a pass or it is told why not, and a pass that came out of one goes back into one and
// comes out the same.
#include "TessikAutomation/Automation/PassMIDIFile.h"
#include "TessikAutomation/Persistence/WallClock.h"

using namespace tessik;

namespace {

void require(bool holds) {
    if (!holds) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QByteArrayView file(bytes, qsizetype(size));
    const QDateTime now = dateOfSecond(0);
    const auto rate = MTCFrameRate(size % 4);
    PassMIDIFile::Imported read = PassMIDIFile::read(file, 1, rate, now);
    require(read.pass.has_value() == read.error.isEmpty());
    if (!read.pass) return 0;

    QString error;
    const QByteArray written = PassMIDIFile::write(*read.pass, 1, error);
    require(error.isEmpty());
    PassMIDIFile::Imported again = PassMIDIFile::read(written, 1, rate, now);
    const bool isEmpty =
        read.pass->events.isEmpty() && (!read.pass->initialState || read.pass->initialState->isEmpty());
    require(again.pass.has_value() != isEmpty && again.notes.isEmpty());
    if (!again.pass) return 0;
    again.pass->id = read.pass->id;
    require(*again.pass == *read.pass);
    return 0;
}
