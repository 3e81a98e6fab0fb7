#include "TessikAutomation/Automation/StandardMIDIFile.h"

#include <QtEndian>

#include <algorithm>

namespace tessik {
namespace {

constexpr int maxLengthBytes = 4; // of a variable-length quantity
constexpr qsizetype maxMarkers = 1 << 16;

/// Reads bytes in order, and knows after each step whether there were enough.
class Reader {
public:
    explicit Reader(QByteArrayView bytes) : _bytes(bytes) {}

    bool isAtEnd() const { return _at == _bytes.size(); }
    qsizetype position() const { return _at; }
    int peek() const { return std::uint8_t(_bytes[_at]); }

    std::optional<std::uint32_t> number(int length) {
        const auto bytes = take(length);
        if (!bytes) return std::nullopt;
        std::uint32_t value = 0;
        for (const char byte : *bytes)
            value = value << 8 | std::uint8_t(byte);
        return value;
    }
    std::optional<QByteArrayView> take(qsizetype length) {
        if (_bytes.size() - _at < length) return std::nullopt;
        const QByteArrayView taken = _bytes.sliced(_at, length);
        _at += length;
        return taken;
    }

private:
    const QByteArrayView _bytes;
    qsizetype _at = 0;
};

/// Reads one track into the file. Stops at the first error.
class TrackReader {
public:
    /// `start` is the track's position in the file, for messages.
    TrackReader(StandardMIDIFile& file, QByteArrayView track, qsizetype start)
        : _file(file), _reader(track), _start(start) {}

    QString read() {
        while (!_reader.isAtEnd() && !_ended && _error.isEmpty()) {
            const auto time = length();
            if (time) {
                _tick += *time;
                readEvent();
            }
        }
        return _error;
    }

private:
    void fail(const char* what, qsizetype at) {
        if (_error.isEmpty())
            _error = QStringLiteral("The MIDI file %1 (byte %2)").arg(QLatin1String(what)).arg(_start + at);
    }
    template <typename Taken>
    Taken need(Taken taken) {
        if (!taken) fail("ends in the middle of an event", _reader.position());
        return taken;
    }

    std::optional<std::uint32_t> length() {
        std::uint32_t value = 0;
        for (int i = 0; i < maxLengthBytes; ++i) {
            const auto byte = need(_reader.number(1));
            if (!byte) return std::nullopt;
            value = value << 7 | (*byte & 0x7F);
            if (*byte < 0x80) return value;
        }
        fail("has a length that is too long", _reader.position());
        return std::nullopt;
    }

    void readEvent() {
        if (_reader.isAtEnd()) return fail("ends in the middle of an event", _reader.position());
        int status = _reader.peek();
        if (status < 0x80) {
            if (_runningStatus == 0) return fail("has data without a message", _reader.position());
            return readMessage(_runningStatus);
        }
        _reader.take(1);
        if (status < 0xF0) return readMessage(_runningStatus = std::uint8_t(status));
        if (status == 0xFF) return readMeta();
        if (status != 0xF0 && status != 0xF7) return fail("has a message that belongs in none", _reader.position() - 1);
        const auto size = length();
        if (size && need(_reader.take(*size))) _file.events.push_back({_tick, StandardMIDIFile::sysEx, 0, 0});
    }

    void readMessage(std::uint8_t status) {
        const int kind = status >> 4;
        std::array<std::uint8_t, 2> data{};
        for (int i = 0; i < (kind == 0xC || kind == 0xD ? 1 : 2); ++i) {
            const auto byte = need(_reader.number(1));
            if (!byte) return;
            if (*byte >= 0x80) return fail("has a message without its data", _reader.position() - 1);
            data[std::size_t(i)] = std::uint8_t(*byte);
        }
        _file.events.push_back({_tick, status, data[0], data[1]});
    }

    void readMeta() {
        using Meta = MIDITrackWriter::Meta;
        const auto type = need(_reader.number(1));
        const auto size = type ? length() : std::nullopt;
        const auto data = size ? need(_reader.take(*size)) : std::nullopt;
        if (!data) return;
        switch (Meta(*type)) {
        case Meta::trackName:
            if (_file.name.isEmpty()) _file.name = data->toByteArray();
            break;
        case Meta::marker:
            if (_file.markers.size() == maxMarkers) break;
            _file.events.push_back({_tick, StandardMIDIFile::marker, std::uint8_t(_file.markers.size() >> 8),
                                    std::uint8_t(_file.markers.size())});
            _file.markers.append(data->toByteArray());
            break;
        case Meta::endOfTrack: _ended = true; break;
        case Meta::tempo:
            if (const auto tempo = Reader(*data).number(3); tempo && *tempo > 0)
                _file.tempos.push_back({_tick, int(*tempo)});
            break;
        case Meta::smpteOffset:
            if (data->size() != 5 || _file.smpteOffset) break;
            _file.smpteOffset.emplace();
            std::copy(data->begin(), data->end(), _file.smpteOffset->begin());
            break;
        default: break; // lyrics, key signatures and the like: nothing that a pass could keep
        }
    }

    StandardMIDIFile& _file;
    Reader _reader;
    const qsizetype _start;
    std::int64_t _tick = 0;
    std::uint8_t _runningStatus = 0;
    bool _ended = false;
    QString _error;
};

QString readDivision(StandardMIDIFile& file, std::uint32_t division) {
    if (division < 0x8000) {
        file.ticksPerQuarter = int(division);
    } else {
        file.framesPerSecond = 0x100 - int(division >> 8);
        file.ticksPerFrame = int(division & 0xFF);
        constexpr std::array rates{24, 25, 29, 30};
        if (std::find(rates.begin(), rates.end(), file.framesPerSecond) == rates.end())
            return QStringLiteral("The MIDI file counts in frames of a rate that timecode does not have");
    }
    return file.ticksPerQuarter == 0 && file.ticksPerFrame == 0
               ? QStringLiteral("The MIDI file does not say how long a tick is")
               : QString();
}

} // namespace

QString StandardMIDIFile::parse(QByteArrayView bytes) {
    const QString cut = QStringLiteral("The MIDI file ends before it should");
    if (bytes.size() > maxBytes) return QStringLiteral("The MIDI file is larger than %1 MB").arg(maxBytes >> 20);
    Reader reader(bytes);
    if (reader.take(4) != QByteArrayView("MThd")) return QStringLiteral("This is not a Standard MIDI File");
    const auto headerSize = reader.number(4);
    const auto headerBytes = headerSize ? reader.take(*headerSize) : std::nullopt;
    if (!headerBytes || *headerSize < 6) return cut;
    Reader header(*headerBytes);
    const std::uint32_t type = *header.number(2);
    if (type > 1)
        return QStringLiteral("MIDI files of type %1 hold independent patterns and cannot be a pass").arg(type);
    const std::uint32_t trackCount = *header.number(2);
    if (const QString error = readDivision(*this, *header.number(2)); !error.isEmpty()) return error;

    std::uint32_t tracks = 0;
    while (!reader.isAtEnd()) {
        const auto chunkType = reader.take(4);
        const auto chunkSize = chunkType ? reader.number(4) : std::nullopt;
        const qsizetype start = reader.position();
        const auto chunk = chunkSize ? reader.take(*chunkSize) : std::nullopt;
        if (!chunk) return cut;
        if (*chunkType != QByteArrayView("MTrk")) continue;
        ++tracks;
        if (const QString error = TrackReader(*this, *chunk, start).read(); !error.isEmpty()) return error;
    }
    if (tracks < trackCount) return cut;
    const auto isEarlier = [](const auto& a, const auto& b) { return a.tick < b.tick; };
    std::stable_sort(events.begin(), events.end(), isEarlier);
    std::stable_sort(tempos.begin(), tempos.end(), isEarlier);
    return {};
}

// ---- writing

void MIDITrackWriter::addMeta(Meta type, const QByteArray& data) {
    addTime(_tick);
    _track.append(char(0xFF)).append(char(type));
    addLength(std::uint32_t(data.size()));
    _track.append(data);
}

void MIDITrackWriter::addMessage(std::int64_t tick, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    addTime(tick);
    _track.append(char(status)).append(char(data1)).append(char(data2));
}

void MIDITrackWriter::addTime(std::int64_t tick) {
    addLength(std::uint32_t(tick - _tick));
    _tick = tick;
}

void MIDITrackWriter::addLength(std::uint32_t length) {
    for (int shift = 7 * (maxLengthBytes - 1); shift > 0; shift -= 7)
        if (length >> shift) _track.append(char(0x80 | (length >> shift & 0x7F)));
    _track.append(char(length & 0x7F));
}

QByteArray MIDITrackWriter::file(int ticksPerQuarter) {
    addMeta(Meta::endOfTrack, {});
    QByteArray all("MThd\0\0\0\6\0\0\0\1", 12);
    all.append(char(ticksPerQuarter >> 8)).append(char(ticksPerQuarter)).append("MTrk");
    std::array<char, 4> size{};
    qToBigEndian(std::uint32_t(_track.size()), size.data());
    return all.append(size.data(), qsizetype(size.size())).append(_track);
}

} // namespace tessik
