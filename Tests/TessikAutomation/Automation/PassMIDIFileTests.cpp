#include "TessikAutomation/Automation/PassMIDIFile.h"
#include "TessikAutomation/Persistence/WallClock.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

const QDateTime date = dateOfSecond(1'700'000'000);

TimedEvent fader(std::int64_t offset, ChannelKind kind, int value) {
    return {offset, kind, PassEventValue::fader(value)};
}

AutomationPass somePass(MTCFrameRate rate) {
    const std::int64_t perMinute = 60 * framesPerSecond(rate);
    return {.id = QUuid::createUuid(),
            .name = QStringLiteral("Verse – take 2"),
            .createdAt = date,
            .frameRate = rate,
            .startTimecode = TimecodePosition::fromTotalFrames(rate, 59 * perMinute + 17),
            .events = {fader(0, ChannelKind::input(1), 64),
                       fader(0, ChannelKind::input(1), 65),
                       {3, ChannelKind::group(8), PassEventValue::switches({.eqOn = true, .chanMuted = true})},
                       fader(perMinute - 18, ChannelKind::stereo(), 127), // the hour, where drop leaves no label out
                       fader(2 * perMinute - 18, ChannelKind::stereo(), 1),
                       fader(2 * perMinute - 15, ChannelKind::stereo(), 2), // past the two left out of the next minute
                       fader(300 * perMinute, ChannelKind::input(32), 0)},
            .initialState = QList<ChannelSnapshot>{{.kind = ChannelKind::input(1), .faderValue = 20, .auxMuted = true},
                                                   {.kind = ChannelKind::stereo(), .faderValue = 106}}};
}

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray all;
    for (const int value : values)
        all.append(char(value));
    return all;
}
QByteArray chunk(const char* type, const QByteArray& data) {
    return QByteArray(type) + bytes({0, 0, int(data.size() >> 8), int(data.size() & 0xFF)}) + data;
}
QByteArray file(int type, int divisionHigh, int divisionLow, const QList<QByteArray>& tracks) {
    QByteArray all = chunk("MThd", bytes({0, type, 0, int(tracks.size()), divisionHigh, divisionLow}));
    for (const QByteArray& track : tracks)
        all += chunk("MTrk", track + bytes({0, 0xFF, 0x2F, 0}));
    return all;
}
PassMIDIFile::Imported import(const QByteArray& file, int channel = 1, MTCFrameRate rate = MTCFrameRate::fps25) {
    return PassMIDIFile::read(file, channel, rate, date);
}

TEST(PassMIDIFile, ReadsBackWhatItWrote) {
    for (const MTCFrameRate rate :
         {MTCFrameRate::fps24, MTCFrameRate::fps25, MTCFrameRate::fps30Drop, MTCFrameRate::fps30})
        for (const bool hasState : {true, false}) {
            SCOPED_TRACE(qPrintable(description(rate)));
            AutomationPass pass = somePass(rate);
            if (!hasState) pass.initialState.reset();
            QString error;
            const PassMIDIFile::Imported read = import(PassMIDIFile::write(pass, 5, error), 5);
            EXPECT_EQ(error, QString());
            EXPECT_EQ(read.error, QString());
            EXPECT_EQ(read.notes, QStringList());
            ASSERT_TRUE(read.pass);
            EXPECT_NE(read.pass->id, pass.id);
            pass.id = read.pass->id;
            EXPECT_EQ(*read.pass, pass);
        }
}

TEST(PassMIDIFile, WritesWhatAnySequencerReads) {
    AutomationPass pass = somePass(MTCFrameRate::fps25);
    pass.name = QStringLiteral("A");
    pass.initialState.reset();
    pass.events = {fader(2, ChannelKind::input(2), 64)};
    QString error;
    const QByteArray track = bytes({0,    0xFF, 0x03, 1, 'A',                           // name
                                    0,    0xFF, 0x54, 5, 1 << 5, 59,   0,    17,   0,   // 25 fps, 00:59:00:17
                                    0,    0xFF, 0x51, 3, 0x07,   0xA1, 0x20,            // 500,000 µs a beat
                                    0x81, 0x48, 0xB3, 1, 64,     0,    0xFF, 0x2F, 0}); // 200 ticks later
    EXPECT_EQ(PassMIDIFile::write(pass, 4, error),
              chunk("MThd", bytes({0, 0, 0, 1, 0x04, 0xE2})) + chunk("MTrk", track)); // 1,250 ticks a beat

    pass.frameRate = MTCFrameRate::fps30Drop; // a minute of labels is 1,798 frames
    pass.startTimecode = TimecodePosition::fromTotalFrames(pass.frameRate, 1802);
    pass.events = {fader(1800, ChannelKind::input(2), 64)};
    const QByteArray written = PassMIDIFile::write(pass, 4, error);
    EXPECT_TRUE(written.contains(bytes({0x05, 0xDC, 'M', 'T', 'r', 'k'}))) << written.toHex(' ').constData();
    EXPECT_TRUE(written.contains(bytes({0xFF, 0x51, 3, 0x07, 0xA3, 0x14}))) << "500,500 µs a beat";
    EXPECT_TRUE(written.contains(bytes({0x8A, 0xFC, 0x58, 0xB3, 1, 64}))) << "179,800 ticks later";

    EXPECT_EQ(error, QString());
    pass.startTimecode.hours = 24;
    EXPECT_EQ(PassMIDIFile::write(pass, 4, error), QByteArray());
    EXPECT_EQ(error, QStringLiteral("The pass starts at 24:01:00:02, which a MIDI file cannot express"));
    pass.startTimecode.hours = 0;
    pass.events[0].frameOffset = std::int64_t(1) << 60;
    EXPECT_EQ(PassMIDIFile::write(pass, 4, error), QByteArray());
    EXPECT_EQ(error, QStringLiteral("The pass is longer than 24 hours, which a MIDI file cannot express"));
}

TEST(PassMIDIFile, TakesBeatsTracksAndRunningStatusFromOtherSequencers) {
    const QByteArray conductor = bytes({0,    0xFF, 0x54, 5,    1 << 5 | 1, 0,    0,    0,   0, // 25 fps, 01:00:00:00
                                        0,    0xFF, 0x51, 3,    0x07,       0xA1, 0x20,         // 120 a minute
                                        0x83, 0x60, 0xFF, 0x51, 3,          0x0F, 0x42, 0x40}); // after a beat 60
    const QByteArray moves = bytes({0,    0xFF, 0x03, 3,  'M',  'i',  'x', 0,  0xB0, 0,  10, // running status follows
                                    0x83, 0x60, 0,    20, 0x83, 0x60, 64,  31, 0x60, 48, 99});
    const QByteArray others = bytes({0, 0x90, 60, 100, 0, 0xC0, 3, 0, 0xB0, 40, 1, 0, 0xB7, 0, 1, 0, 0xF0, 2, 1, 0xF7});
    const PassMIDIFile::Imported read =
        import(file(1, 0x01, 0xE0, {conductor, moves, others}), 1, MTCFrameRate::fps30); // 480 a quarter
    EXPECT_EQ(read.error, QString());
    ASSERT_TRUE(read.pass);
    EXPECT_EQ(read.pass->frameRate, MTCFrameRate::fps25) << "as its offset counts";
    EXPECT_EQ(read.pass->name, QStringLiteral("Mix"));
    EXPECT_EQ(read.pass->startTimecode.displayString(), QStringLiteral("01:00:00:00"));
    EXPECT_FALSE(read.pass->initialState);
    const TimedEvent mute{38, ChannelKind::input(1), PassEventValue::switches({.chanMuted = true})};
    EXPECT_EQ(read.pass->events,
              (QList<TimedEvent>{fader(0, ChannelKind::input(1), 10), fader(13, ChannelKind::input(1), 20), mute,
                                 fader(43, ChannelKind::stereo(), 99)}));
    EXPECT_EQ(read.notes,
              (QStringList{QStringLiteral("3 events between two frames were put on the nearest one."),
                           QStringLiteral("A controller on another MIDI channel was left out."),
                           QStringLiteral("A controller that is no fader or switch of the desk was left out."),
                           QStringLiteral("A note was left out."),
                           QStringLiteral("2 messages of other kinds were left out.")}));
}

TEST(PassMIDIFile, TakesFilesThatCountInFrames) {
    const QByteArray track = bytes({0, 0xFF, 0x54, 5, 2 << 5, 1, 0, 2, 0, // 29.97 drop, 00:01:00:02
                                    0x88, 0xE3, 0x60, 0xB3, 1, 64});      // a minute of labels later, 1,798 frames
    const PassMIDIFile::Imported read = import(file(0, 0x100 - 29, 80, {track}), 4);
    ASSERT_TRUE(read.pass);
    EXPECT_EQ(read.pass->frameRate, MTCFrameRate::fps30Drop);
    EXPECT_EQ(read.pass->startTimecode.totalFrames(), 1802);
    EXPECT_EQ(read.pass->events, QList<TimedEvent>{fader(1800, ChannelKind::input(2), 64)});
    EXPECT_EQ(read.notes, QStringList());
}

TEST(PassMIDIFile, SaysWhatItDidWithWhatDoesNotFit) {
    const QByteArray moves = bytes({0, 0xB2, 0, 10, 41, 0, 20}); // half a frame
    const PassMIDIFile::Imported read = import(file(0, 0x100 - 24, 80, {moves}), 7);
    ASSERT_TRUE(read.pass);
    EXPECT_EQ(read.pass->frameRate, MTCFrameRate::fps24);
    EXPECT_EQ(read.pass->events.size(), 2);
    EXPECT_EQ(
        read.notes,
        (QStringList{QStringLiteral("Its controllers are on MIDI channel 3, not on 7; they were taken from there."),
                     QStringLiteral("It does not say where it starts; it was put at 00:00:00:00."),
                     QStringLiteral("An event between two frames was put on the nearest one.")}));
}

TEST(PassMIDIFile, RefusesWhatIsNoPass) {
    const QByteArray move = bytes({0, 0xB0, 0, 10});
    const struct {
        QByteArray file;
        const char* error;
    } cases[] = {
        {"RIFF and so on", "This is not a Standard MIDI File"},
        {file(2, 1, 0xE0, {move}), "MIDI files of type 2 hold independent patterns and cannot be a pass"},
        {file(0, 0, 0, {move}), "The MIDI file does not say how long a tick is"},
        {file(0, 0x100 - 23, 80, {move}), "The MIDI file counts in frames of a rate that timecode does not have"},
        {file(0, 1, 0xE0, {bytes({0, 0x90, 60, 1})}),
         "The MIDI file has no fader or switch of the desk on MIDI channel 1"},
        {file(0, 1, 0xE0, {bytes({0, 10, 10})}), "The MIDI file has data without a message (byte 23)"},
        {file(0, 1, 0xE0, {bytes({0, 0xB0, 0xB0, 10})}), "The MIDI file has a message without its data (byte 24)"},
        {file(0, 1, 0xE0, {bytes({0x80, 0x80, 0x80, 0x80, 0})}),
         "The MIDI file has a length that is too long (byte 26)"},
        {file(0, 1, 0xE0, {bytes({0, 0xF5})}), "The MIDI file has a message that belongs in none (byte 23)"},
    };
    for (const auto& [bytes, error] : cases) {
        const PassMIDIFile::Imported read = import(bytes);
        EXPECT_EQ(read.error, QString::fromLatin1(error));
        EXPECT_FALSE(read.pass);
    }
    QString error;
    const QByteArray whole = PassMIDIFile::write(somePass(MTCFrameRate::fps30), 1, error);
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_NE(import(whole.first(length)).error, QString()) << length;
}

} // namespace
} // namespace tessik
