#include "TessikAutomation/Automation/PassMIDIFile.h"

#include "TessikAutomation/Automation/LaneEvent.h"
#include "TessikAutomation/Automation/StandardMIDIFile.h"
#include "TessikKit/Models/DropFrame.h"

#include <QStringDecoder>

namespace tessik::PassMIDIFile {
namespace {

using Meta = MIDITrackWriter::Meta;

constexpr int ticksPerFrame = 100;
constexpr std::int64_t hoursPerDay = 24;
constexpr qsizetype maxNameLength = 200;
const QByteArray startMarker = QByteArrayLiteral("Take");

/// Converts the label count that a pass keeps to frames elapsed since 00:00:00:00.
std::int64_t realFrame(MTCFrameRate rate, std::int64_t label) {
    return rate == MTCFrameRate::fps30Drop ? DropFrame::frameOfLabel(label) : label;
}
std::int64_t labelOf(MTCFrameRate rate, std::int64_t realFrame) {
    return rate == MTCFrameRate::fps30Drop ? DropFrame::labelOfFrame(realFrame) : realFrame;
}

/// How a division in frames denotes 29.97 drop.
constexpr int dropDivision = 29;

/// In the files written, a beat is half a second of nominal frames.
int ticksPerQuarter(MTCFrameRate rate) { return framesPerSecond(rate) * ticksPerFrame / 2; }
int microsecondsPerQuarter(MTCFrameRate rate) { return rate == MTCFrameRate::fps30Drop ? 500'500 : 500'000; }

bool isInRange(std::int64_t value, std::int64_t end) { return value >= 0 && value < end; }
bool isLabel(const TimecodePosition& label) {
    return isInRange(label.hours, hoursPerDay) && isInRange(label.minutes, 60) && isInRange(label.seconds, 60) &&
           isInRange(label.frames, framesPerSecond(label.frameRate));
}

/// The label of an SMPTE offset; none if it is not a valid timecode.
std::optional<TimecodePosition> toldStart(const std::array<std::uint8_t, 5>& offset) {
    const auto [hours, minutes, seconds, frames, subframes] = offset;
    const TimecodePosition told{*mtcFrameRateFromRawValue(hours >> 5 & 3), hours & 0x1F, minutes, seconds, frames};
    return hours < 0x80 && isLabel(told) ? std::optional(told) : std::nullopt;
}

QString counted(std::int64_t count, const QString& one, const QString& many) {
    return count == 1 ? one : many.arg(count);
}

/// Converts ticks, given in ascending order, to elapsed frames.
class FrameCounter {
public:
    FrameCounter(const StandardMIDIFile& file, MTCFrameRate rate) : _file(file), _rate(rate) {}

    /// The nearest frame; none past 24 hours. Counts events that do not fall on a frame.
    std::optional<std::int64_t> frameAt(std::int64_t tick) {
        const Time time = timeAt(tick);
        if (time.numerator > hoursPerDay * 3600 * framesPerSecond(_rate) * time.denominator) return std::nullopt;
        const auto frame = std::int64_t((2 * time.numerator + time.denominator) / (2 * time.denominator));
        if (frame * time.denominator != time.numerator) ++_betweenFrames;
        return frame;
    }
    std::int64_t betweenFrames() const { return _betweenFrames; }

private:
    __extension__ using Wide = __int128; // a day's events in ticks times microseconds exceed 64 bits
    /// In frames, as a fraction.
    struct Time {
        Wide numerator, denominator;
    };

    Time timeAt(std::int64_t tick) {
        if (_file.ticksPerFrame > 0) return {tick, _file.ticksPerFrame};
        for (; _nextTempo < _file.tempos.size() && _file.tempos[_nextTempo].tick <= tick; ++_nextTempo) {
            const StandardMIDIFile::Tempo& tempo = _file.tempos[_nextTempo];
            _elapsed += Wide(tempo.tick - _tempoTick) * _microsecondsPerQuarter;
            _tempoTick = tempo.tick;
            _microsecondsPerQuarter = tempo.microsecondsPerQuarter;
        }
        const Wide elapsed = _elapsed + Wide(tick - _tempoTick) * _microsecondsPerQuarter;
        const bool isDrop = _rate == MTCFrameRate::fps30Drop;
        return {elapsed * framesPerSecond(_rate) * (isDrop ? 1000 : 1),
                Wide(_file.ticksPerQuarter) * 1'000'000 * (isDrop ? 1001 : 1)};
    }

    const StandardMIDIFile& _file;
    const MTCFrameRate _rate;
    std::size_t _nextTempo = 0;
    std::int64_t _tempoTick = 0;
    int _microsecondsPerQuarter = 500'000; // unless the file says otherwise
    Wide _elapsed = 0;                     // up to `_tempoTick`, in microseconds times ticks a quarter
    std::int64_t _betweenFrames = 0;
};

bool isDeskController(const StandardMIDIFile::Event& event) {
    return event.status >> 4 == 0xB && (MIDIChannelMapping::channelKindForFaderCC(event.data1) ||
                                        MIDIChannelMapping::channelKindForSwitchCC(event.data1));
}

/// Makes a pass from a file's contents, and keeps track of what it cannot use.
class Importer {
public:
    Importer(const StandardMIDIFile& file, int midiChannel, MTCFrameRate rateForBeats)
        : _file(file), _asked(midiChannel - 1), _channel(_asked), _rate(rateForBeats) {
        if (file.smpteOffset) _told = toldStart(*file.smpteOffset);
        if (file.framesPerSecond == 0 && _told)
            _rate = _told->frameRate;
        else if (file.framesPerSecond == dropDivision)
            _rate = MTCFrameRate::fps30Drop;
        else if (file.framesPerSecond > 0)
            _rate = file.framesPerSecond == 24   ? MTCFrameRate::fps24
                    : file.framesPerSecond == 25 ? MTCFrameRate::fps25
                                                 : MTCFrameRate::fps30;
    }

    Imported run(const QDateTime& createdAt) {
        if (!chooseChannel())
            return {.pass = {},
                    .error = QStringLiteral("The MIDI file has no fader or switch of the desk on MIDI channel %1")
                                 .arg(_asked + 1),
                    .notes = {}};
        _pass.emplace();
        _pass->id = QUuid::createUuid();
        _pass->createdAt = createdAt;
        _pass->frameRate = _rate;
        _pass->startTimecode = start();
        takeName();
        if (!takeEvents())
            return {.pass = {}, .error = QStringLiteral("The MIDI file is longer than 24 hours"), .notes = {}};
        tellWhatWasLeftOut();
        return {.pass = std::move(_pass), .error = {}, .notes = _notes};
    }

private:
    /// The desk's channel, or the only other one that has the desk's controllers.
    bool chooseChannel() {
        std::array<bool, 16> has{};
        for (const StandardMIDIFile::Event& event : _file.events)
            if (isDeskController(event)) has[event.status & 0xF] = true;
        if (has[std::size_t(_asked)]) return true;
        if (std::count(has.begin(), has.end(), true) != 1) return false;
        _channel = int(std::find(has.begin(), has.end(), true) - has.begin());
        _notes << QStringLiteral("Its controllers are on MIDI channel %1, not on %2; they were taken from there.")
                      .arg(_channel + 1)
                      .arg(_asked + 1);
        return true;
    }

    TimecodePosition start() {
        TimecodePosition zero{.frameRate = _rate};
        if (!_file.smpteOffset) {
            _notes << QStringLiteral("It does not say where it starts; it was put at %1.").arg(zero.displayString());
            return zero;
        }
        if (!_told) {
            _notes << QStringLiteral("Its start is not a valid timecode; it was put at %1.").arg(zero.displayString());
            return zero;
        }
        TimecodePosition taken = *_told;
        taken.frameRate = _rate;
        taken.frames = _told->frames * framesPerSecond(_rate) / framesPerSecond(_told->frameRate);
        if (_told->frames != 0 && taken.frames != _told->frames)
            _notes << QStringLiteral("It starts at %1 of %2, which was taken as %3 of %4.")
                          .arg(_told->displayString(), description(_told->frameRate), taken.displayString(),
                               description(_rate));
        return taken;
    }

    void takeName() {
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        const QString decoded = utf8(_file.name);
        _pass->name = (utf8.hasError() ? QString::fromLatin1(_file.name) : decoded).simplified().left(maxNameLength);
        if (!_pass->name.isEmpty() && _pass->name.back().isHighSurrogate()) _pass->name.chop(1);
    }

    bool takeEvents() {
        FrameCounter counter(_file, _rate);
        const std::int64_t startLabel = _pass->startTimecode.totalFrames();
        const std::int64_t startFrame = realFrame(_rate, startLabel);
        for (const StandardMIDIFile::Event& event : _file.events) {
            if (event.status == StandardMIDIFile::marker) {
                if (event.tick == 0 && _file.markers[event.data1 << 8 | event.data2] == startMarker) takeState();
                continue;
            }
            if (!isDeskController(event) || (event.status & 0xF) != _channel) {
                countUnused(event);
                continue;
            }
            const auto frame = counter.frameAt(event.tick);
            if (!frame) return false;
            const std::int64_t offset = labelOf(_rate, startFrame + *frame) - startLabel;
            if (offset >= labelsPerDay(_rate)) return false;
            _pass->events.append(LaneEvent{offset, event.data1, event.data2}.timedEvent());
        }
        if (const std::int64_t count = counter.betweenFrames(); count > 0)
            _notes << counted(count, QStringLiteral("An event between two frames was put on the nearest one."),
                              QStringLiteral("%1 events between two frames were put on the nearest one."));
        return true;
    }

    /// Everything up to here is the state with which the pass starts, for channels given in full.
    void takeState() {
        QList<ChannelSnapshot> state;
        const QList<TimedEvent>& told = _pass->events;
        if (_pass->initialState || told.size() % 2 != 0) return;
        for (qsizetype i = 0; i < told.size(); i += 2) {
            const TimedEvent &fader = told[i], &switches = told[i + 1];
            if (fader.kind != switches.kind || fader.value.kind() != PassEventValue::Case::fader ||
                switches.value.kind() != PassEventValue::Case::switches)
                return;
            const ChannelSwitches held = switches.value.switches();
            state.append({.kind = fader.kind,
                          .faderValue = fader.value.fader(),
                          .monMuted = held.monMuted,
                          .auxMuted = held.auxMuted,
                          .eqOn = held.eqOn,
                          .chanMuted = held.chanMuted,
                          .manualSettings = {}});
        }
        _pass->initialState = state;
        _pass->events.clear();
    }

    void countUnused(const StandardMIDIFile::Event& event) {
        const int kind = event.status >> 4;
        const bool isNoteOff = kind == 0x8 || (kind == 0x9 && event.data2 == 0); // the other half of a note
        if (isNoteOff) return;
        if (kind == 0xB)
            ++((event.status & 0xF) == _channel ? _otherControllers : _otherChannels);
        else
            ++(kind == 0x9 ? _notesPlayed : _otherMessages);
    }

    void tellWhatWasLeftOut() {
        const auto tell = [this](std::int64_t count, const char* one, const char* many) {
            if (count > 0)
                _notes << counted(count, QLatin1String(one), QLatin1String(many)) + QLatin1String(" left out.");
        };
        tell(_otherChannels, "A controller on another MIDI channel was", "%1 controllers on other MIDI channels were");
        tell(_otherControllers, "A controller that is no fader or switch of the desk was",
             "%1 controllers that are no fader or switch of the desk were");
        tell(_notesPlayed, "A note was", "%1 notes were");
        tell(_otherMessages, "A message of another kind was", "%1 messages of other kinds were");
    }

    const StandardMIDIFile& _file;
    const int _asked; // both counted from 0
    int _channel;
    MTCFrameRate _rate;
    std::optional<TimecodePosition> _told; // where the file says it starts
    std::optional<AutomationPass> _pass;
    QStringList _notes;
    std::int64_t _otherChannels = 0, _otherControllers = 0, _notesPlayed = 0, _otherMessages = 0;
};

} // namespace

QByteArray write(const AutomationPass& pass, int midiChannel, QString& error) {
    const MTCFrameRate rate = pass.frameRate;
    TimecodePosition start = pass.startTimecode;
    start.frameRate = rate;
    if (!isLabel(start)) {
        error = QStringLiteral("The pass starts at %1, which a MIDI file cannot express").arg(start.displayString());
        return {};
    }
    MIDITrackWriter track;
    track.addMeta(Meta::trackName, pass.name.toUtf8());
    QByteArray offset;
    for (const std::int64_t field :
         {start.hours | std::int64_t(rate) << 5, start.minutes, start.seconds, start.frames, std::int64_t(0)})
        offset.append(char(field));
    track.addMeta(Meta::smpteOffset, offset);
    QByteArray tempo;
    for (const int shift : {16, 8, 0})
        tempo.append(char(microsecondsPerQuarter(rate) >> shift));
    track.addMeta(Meta::tempo, tempo);

    const auto status = std::uint8_t(0xB0 | (midiChannel - 1));
    if (pass.initialState) {
        for (const ChannelSnapshot& channel : *pass.initialState) {
            const TimedEvent fader{0, channel.kind, PassEventValue::fader(channel.faderPosition())};
            const TimedEvent switches{0, channel.kind, PassEventValue::switches(channel.switches())};
            for (const TimedEvent& event : {fader, switches})
                if (const auto lane = LaneEvent::of(event)) track.addMessage(0, status, lane->cc, lane->value);
        }
        track.addMeta(Meta::marker, startMarker);
    }
    AutomationPass sorted = pass;
    sorted.sortEvents();
    const std::int64_t startLabel = start.totalFrames();
    for (const TimedEvent& event : sorted.events) {
        const auto lane = LaneEvent::of(event);
        if (!lane) continue;
        const std::int64_t label = std::max<std::int64_t>(lane->frameOffset, 0);
        if (label >= labelsPerDay(rate)) {
            error = QStringLiteral("The pass is longer than 24 hours, which a MIDI file cannot express");
            return {};
        }
        const std::int64_t frame = realFrame(rate, startLabel + label) - realFrame(rate, startLabel);
        track.addMessage(frame * ticksPerFrame, status, lane->cc, lane->value);
    }
    return track.file(ticksPerQuarter(rate));
}

Imported read(QByteArrayView bytes, int midiChannel, MTCFrameRate rateForBeats, const QDateTime& createdAt) {
    StandardMIDIFile file;
    if (const QString error = file.parse(bytes); !error.isEmpty()) return {.pass = {}, .error = error, .notes = {}};
    return Importer(file, midiChannel, rateForBeats).run(createdAt);
}

} // namespace tessik::PassMIDIFile
