#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessik {

/// The contents of a Standard MIDI File of type 0 or 1, its tracks merged.
struct StandardMIDIFile {
    /// A tick is a fraction of a quarter note, or of a frame if the file counts in frames.
    int ticksPerQuarter = 0; ///< 0 if it counts in frames
    int framesPerSecond = 0; ///< 24, 25, 29 (29.97 drop) or 30; 0 if it counts in quarters
    int ticksPerFrame = 0;

    struct Event {
        std::int64_t tick;
        std::uint8_t status; ///< of a channel message; `sysEx` and `marker` for those
        std::uint8_t data1, data2;
    };
    static constexpr std::uint8_t sysEx = 0xF0;
    static constexpr std::uint8_t marker = 0xFF; ///< its data is the index in `markers`, high byte first
    std::vector<Event> events;                   ///< in time order
    QList<QByteArray> markers;

    struct Tempo {
        std::int64_t tick;
        int microsecondsPerQuarter;
    };
    std::vector<Tempo> tempos;                              ///< in time order
    QByteArray name;                                        ///< the first track name
    std::optional<std::array<std::uint8_t, 5>> smpteOffset; ///< hours with rate, minutes, seconds, frames, subframes

    /// Larger files are refused.
    static constexpr qsizetype maxBytes = 32 << 20;
    /// Fills this object, which must be new. Returns why the bytes cannot be read; empty on success.
    QString parse(QByteArrayView bytes);
};

/// Writes the single track of a type 0 file that counts in quarter notes.
class MIDITrackWriter {
public:
    enum class Meta : std::uint8_t {
        trackName = 0x03,
        marker = 0x06,
        endOfTrack = 0x2F,
        tempo = 0x51,
        smpteOffset = 0x54
    };

    void addMeta(Meta type, const QByteArray& data);
    /// `tick` is no earlier than those before, and less than 2^28 later.
    void addMessage(std::int64_t tick, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    /// The whole file. Add nothing after this.
    QByteArray file(int ticksPerQuarter);

private:
    void addTime(std::int64_t tick);
    void addLength(std::uint32_t length);

    QByteArray _track;
    std::int64_t _tick = 0;
};

} // namespace tessik
