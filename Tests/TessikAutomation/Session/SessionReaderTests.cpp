#include "Support/Sessions.h"
#include "TessikAutomation/Automation/PassIndex.h"
#include "TessikAutomation/Automation/PassLanes.h"
#include "TessikAutomation/Session/LocateTarget.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Session/SessionWriter.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tessik {
namespace {

const QDateTime now = second(99'000'000);

SessionReadResult parse(const QByteArray& json) { return parseSession(json, now); }

QByteArray written(const SessionDocument& document) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_EQ(writeSession(document, buffer), QString());
    return buffer.data();
}

QStringList fallenBack(const SessionReadResult& result) {
    QStringList keys;
    for (const auto& fallback : result.fallbacks)
        keys += fallback.key;
    return keys;
}

/// The one reason why `json` as the value of a key made it fall back; empty where it did not.
QString reason(const char* key, const QByteArray& json) {
    const SessionReadResult result = parse(QByteArray("{\"") + key + "\":" + json + "}");
    EXPECT_TRUE(result.document) << qUtf8Printable(result.error);
    for (const auto& fallback : result.fallbacks)
        if (fallback.key == QLatin1String(key) && fallback.reason != QLatin1String("the key is missing"))
            return fallback.reason;
    return {};
}

TEST(SessionReader, ReadsEveryRecordAndWritesTheSameBack) {
    const QByteArray text = contentsOf(testData("full.tessik"));
    const SessionReadResult result = parse(text);
    ASSERT_TRUE(result.document) << qUtf8Printable(result.error);
    EXPECT_EQ(fallenBack(result), QStringList());
    EXPECT_EQ(result.unknownKeys, QStringList());

    const SessionDocument& session = *result.document;
    const AutomationPass& pass = session.passes[0];
    EXPECT_EQ(pass.events[1], (TimedEvent{0, ChannelKind::input(32), PassEventValue::fader(96)}));
    EXPECT_EQ(pass.events[4],
              (TimedEvent{1802, ChannelKind::input(7), PassEventValue::switches({false, true, true, false})}));
    EXPECT_EQ(pass.startTimecode, (TimecodePosition{MTCFrameRate::fps30Drop, 1, 0, 0, 0}));
    EXPECT_EQ(pass.initialState->first().faderValue, 64);
    EXPECT_FALSE(session.passes[1].initialState);
    EXPECT_EQ(session.snapshots[1].name, QStringLiteral("Refrain “groß” \\ \"2\""));
    EXPECT_EQ(session.snapshots[1].createdAt, dateOfSecond(1'767'798'000));
    EXPECT_EQ(session.snapshots[0].channels[0].manualSettings->micTrim, -16.25);
    EXPECT_EQ(session.defaultSnapshotID, session.snapshots[0].id);
    EXPECT_EQ(session.channelLabels.value(QStringLiteral("group-3")).colorHex, QStringLiteral("123ABC"));

    // What other readers see is the same too, but for dates in UTC and UUIDs in upper case.
    QByteArray expected = text;
    expected.replace("2026-03-04T21:05:00+01:00", "2026-03-04T20:05:00Z")
        .replace("2026-01-07T10:00:00-05:00", "2026-01-07T15:00:00Z")
        .replace("0f8fad5b-d9cb-469f-a165-70867728950e", "0F8FAD5B-D9CB-469F-A165-70867728950E");
    EXPECT_EQ(QJsonDocument::fromJson(written(session)), QJsonDocument::fromJson(expected));
}

TEST(SessionReader, ReadsBackWhatWasWritten) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        const SessionDocument session = sampleSession(seed);
        const SessionReadResult result = parse(written(session));
        ASSERT_TRUE(result.document) << qUtf8Printable(result.error);
        ASSERT_EQ(fallenBack(result), QStringList());
        ASSERT_EQ(*result.document, session) << "seed " << seed;
    }
    SessionDocument extremes = SessionDocument::empty(second(0));
    extremes.formatVersion = std::numeric_limits<std::int64_t>::min();
    extremes.masterSection.aux1Level = std::numeric_limits<double>::denorm_min();
    extremes.masterSection.aux2Level = -std::numeric_limits<double>::max();
    extremes.masterSection.aux3Level = 0.1;
    extremes.passes.append({.name = QString::fromUtf8("a\nb\0c😀", 9), .createdAt = second(1)});
    extremes.passes[0].events = {{std::numeric_limits<std::int64_t>::max(), ChannelKind::input(-7),
                                  PassEventValue::fader(std::numeric_limits<std::int64_t>::min())}};
    EXPECT_EQ(*parse(written(extremes)).document, extremes);
}

TEST(SessionReader, NoLabelOfAFileIsTooFarToBeCountedWith) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t wild : {most, -most - 1, most / 100}) {
        SessionDocument session = SessionDocument::empty(second(0));
        session.startLocator = session.endLocator = TimecodePosition{MTCFrameRate::fps30, wild, wild, wild, wild};
        session.passes.append({.createdAt = second(1), .startTimecode = *session.startLocator});
        session.passes[0].events = {{wild, ChannelKind::input(1), PassEventValue::fader(wild)}};
        const SessionReadResult result = parse(written(session));
        ASSERT_EQ(fallenBack(result), QStringList());
        const AutomationPass& pass = result.document->passes[0];
        const std::int64_t first = pass.startTimecode.totalFrames();
        const std::int64_t last = LocateTarget::passEnd(pass.startTimecode, wild).totalFrames();
        EXPECT_TRUE(wild < 0 ? last == 0 : last > first);
        const std::int64_t length = PassIndex(pass.events).lastOffset();
        EXPECT_EQ(pass.offsetOf(first + 5, length), 5) << "the engine's way over a pass of that length";
        EXPECT_EQ(result.document->endLocator->totalFrames(), first);
        EXPECT_GE(PassLanes(pass).lastOffset(), 0);
        EXPECT_LE(PassLanes(pass).lastOffset() + last, most / 2);
    }
    SessionDocument session = SessionDocument::empty(second(0));
    session.startLocator = TimecodePosition{MTCFrameRate::fps25, 1'000'000'000'000, 75, -3, 40};
    EXPECT_EQ(parse(written(session)).document->startLocator, session.startLocator) << "odd, but no trouble";
}

TEST(SessionReader, MissingKeysTakeTheirDefaults) {
    const SessionReadResult result = parse("{}");
    ASSERT_TRUE(result.document);
    EXPECT_EQ(*result.document, SessionDocument::empty(now));
    EXPECT_EQ(result.document->masterSection.effectsReturns.size(), 4);
    EXPECT_EQ(result.fallbacks.size(), 8u); // the optional three are not missed

    const SessionReadResult later = parse(R"({"formatVersion": 7, "colour": [1, {"a": null}], "endLocator": null})");
    EXPECT_EQ(later.document->formatVersion, 7);
    EXPECT_EQ(later.unknownKeys, QStringList(QStringLiteral("colour")));
    EXPECT_FALSE(fallenBack(later).contains(QStringLiteral("endLocator")));
}

TEST(SessionReader, EachKeyFallsBackAlone) {
    QByteArray text = contentsOf(testData("full.tessik"));
    const SessionDocument whole = *parse(text).document;
    text.replace("2026-01-05T14:03:22Z", "yesterday").replace("{\"_0\": 96}", "{\"_1\": 96}");
    text.replace("\"colorHex\": \"E0553F\"", "\"color\": \"E0553F\"");
    const SessionReadResult result = parse(text);
    ASSERT_TRUE(result.document);
    SessionDocument expected = whole;
    expected.createdAt = now;
    expected.passes = {};
    expected.channelLabels = {};
    EXPECT_EQ(*result.document, expected);
    ASSERT_EQ(result.fallbacks.size(), 3u);
    EXPECT_EQ(result.fallbacks[0].reason, QStringLiteral("createdAt: not a date in ISO 8601 without fractions"));
    EXPECT_EQ(result.fallbacks[1].reason, QStringLiteral("passes[0].events[1].value.fader: the key \"_0\" is missing"));
    EXPECT_EQ(result.fallbacks[2].reason, QStringLiteral("channelLabels.input-1: the key \"colorHex\" is missing"));
    for (const auto& [fallback, near] : {std::pair(0, "yesterday"), {1, "{\"_1\": 96}"}, {2, "\"color\""}}) {
        const qsizetype line = 1 + text.left(text.indexOf(near)).count('\n');
        EXPECT_NEAR(double(result.fallbacks[std::size_t(fallback)].line), double(line), fallback == 2 ? 2 : 0);
    }
}

TEST(SessionReader, IsStrictInsideAKey) {
    // A document with the JSON of a row in the place of the %.
    const char* const kind =
        R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","name":"","createdAt":"2026-01-05T14:03:22Z",)"
        R"("channels":[{"kind":%,"faderValue":1,"monMuted":false,"auxMuted":false,"eqOn":false,"chanMuted":false}]}])";
    const char* const value =
        R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","name":"","createdAt":"2026-01-05T14:03:22Z",)"
        R"("frameRate":0,"startTimecode":{"frameRate":0,"hours":0,"minutes":0,"seconds":0,"frames":0},)"
        R"("events":[{"frameOffset":0,"kind":{"stereo":{}},"value":%}]}])";
    const struct {
        const char *key, *around;
        std::vector<const char*> read, refused;
    } rows[]{
        {"formatVersion",
         "%",
         {"5", "5.0", "-2e2", "9223372036854775807"},
         // 2^53 as a double: its neighbours are no doubles.
         {"9223372036854775808", "9007199254740992.0", "5.5", "\"5\"", "true", "null"}},
        {"createdAt",
         "\"%\"",
         {"2026-01-05T14:03:22+05:30", "2026-01-05T14:03:22-00:00", "\\u0032026-01-05T14:03:22Z"},
         {"2026-01-05T14:03:22.5Z", "2026-01-05T14:03:22", "2026-01-05T14:03:22+05", "2026-01-05T14:03:22+0530",
          "2026-01-05T14:03:22+24:00", "2026-01-05 14:03:22Z", "2026-02-30T14:03:22Z", "2026-01-05T24:00:00Z",
          "+026-01-05T14:03:22Z", "0001-01-01T00:00:00+01:00"}},
        {"createdAt", "%", {}, {"1767621802"}},
        {"defaultSnapshotID",
         "\"%\"",
         {"6f9619ff-8b86-d011-b42d-00c04fc964fF"},
         {"{6F9619FF-8B86-D011-B42D-00C04FC964FF}", "6F9619FF8B86D011B42D00C04FC964FF",
          "6F9619FF-8B86-D011-B42D-00C04FC964FG"}},
        {"startLocator",
         R"({"minutes":0,"seconds":99,%})",
         {R"("frameRate":3,"hours":0,"frames":-4,"x":1)", R"("frameRate":3,"hours":0,"hours":"","frames":0)"},
         {R"("frameRate":3,"hours":"","hours":0,"frames":0)", R"("frameRate":4,"hours":0,"frames":0)",
          R"("frameRate":3,"hours":0)", R"("frameRate":3,"hours":null,"frames":0)"}},
        {"channelLabels",
         "%",
         {R"({"input-1":{"name":"","colorHex":"zz"}})"},
         {R"({"input-1":{"name":null,"colorHex":"zz"}})", "[]"}},
        {"manualSettings", "%", {}, {R"({"input-1":{"pad":false}})"}},
        {"masterSection", "%", {}, {"{}"}},
        {"snapshots", "%", {}, {"{}"}},
        {"snapshots",
         kind,
         {R"({"input":{"_0":5}})", R"({"input":{"_0":5.0,"x":0},"colour":{"input":1}})",
          R"({"input":{"_0":33}})", // names no channel, and is kept
          R"({"stereo":{}})"},
         {R"({"stereo":null})", R"({"stereo":0})", R"({"input":5})", R"({"group":{}})", R"({"colour":{}})", "{}",
          R"({"input":{"_0":5},"stereo":{}})", R"("stereo")"}},
        {"passes",
         value,
         {R"({"fader":{"_0":500}})",
          R"({"switches":{"monMuted":true,"auxMuted":true,"eqOn":true,"chanMuted":false,"more":1}})"},
         {R"({"switches":{"monMuted":true,"auxMuted":true,"eqOn":true}})",
          R"({"fader":{"_0":5},"colour":1})", // unlike a channel kind
          R"({"colour":1,"fader":{"_0":5}})",
          R"({"fader":{"_0":5},"switches":{"monMuted":true,"auxMuted":true,"eqOn":true,"chanMuted":false}})",
          R"({"fader":{"_0":5.5}})", R"({"fader":5})", "{}"}},
    };
    const auto reasonFor = [](const char* key, const char* around, const char* json) {
        return reason(key, QByteArray(around).replace('%', json));
    };
    for (const auto& row : rows) {
        for (const char* json : row.read)
            EXPECT_EQ(reasonFor(row.key, row.around, json), QString()) << row.key << ": " << json;
        for (const char* json : row.refused)
            EXPECT_NE(reasonFor(row.key, row.around, json), QString()) << row.key << ": " << json;
    }
    EXPECT_EQ(reasonFor("snapshots", kind, "{}"),
              QStringLiteral("snapshots[0].channels[0].kind: Invalid number of keys found, expected one."));
    EXPECT_EQ(reasonFor("passes", value, R"({"mute":1})"),
              QStringLiteral("passes[0].events[0].value: Invalid number of keys found, expected one."));
}

TEST(SessionReader, TheFirstOfEqualKeysWins) {
    EXPECT_EQ(parse(R"({"formatVersion":2,"formatVersion":3})").document->formatVersion, 2);
    EXPECT_EQ(parse(R"({"formatVersion":"","formatVersion":3})").document->formatVersion, 1);
    EXPECT_EQ(parse(R"({"format\u0056ersion":2})").document->formatVersion, 2);
    const auto labels =
        parse(R"({"channelLabels":{"a":{"name":"1","colorHex":""},"a":{"name":"2","colorHex":""}}})").document;
    EXPECT_EQ(labels->channelLabels.value(QStringLiteral("a")).name, QStringLiteral("1"));
}

TEST(SessionReader, InvalidJSONOpensNothingWhereverItStands) {
    // What stands in a key's value: one that is decoded, one that fails to decode, and one that nobody knows.
    for (const char* nonsense :
         {"tru",     "nul", "truex",       "1.2.3",    "01",   "1.",   "-",         "+1",       ".5",    "1e",
          "0x1",     "NaN", "[1,2}",       "[1 2]",    "[1,]", "[,1]", "{\"a\" 1}", "{\"a\":}", "{a:1}", "{\"a\":1,}",
          "\"\\x\"", "'a'", "\"\\ud800\"", "\"a\nb\"", "\"a",  "[",    "{",         ",",        "1 2",   "/* */ 1"}) {
        for (const char* around : {"{\"formatVersion\":%}", "{\"passes\":[{\"id\":%}]}", "{\"startLocator\":{\"x\":%}}",
                                   "{\"snapshots\":[%]}", "{\"x\":[%]}", "{\"x\":{\"%\":1},\"y\":%}"}) {
            const QByteArray text = QByteArray(around).replace("%", nonsense);
            const SessionReadResult result = parse(text);
            EXPECT_FALSE(result.document) << text.constData();
            EXPECT_FALSE(result.error.isEmpty());
        }
    }
    // Numbers that JSON allows and no machine holds are no reason to open nothing.
    EXPECT_TRUE(parse(R"({"x":[1e999,123456789012345678901234567890,-0.0e-0]})").document);
    EXPECT_NE(reason("masterSection", R"({"aux1Level":1e999})"), QString());
}

TEST(SessionReader, SaysWhyAFileCannotBeOpened) {
    const auto deep = [](int depth) {
        return QByteArray("{\"x\":") + QByteArray(depth, '[') + QByteArray(depth, ']') + "}";
    };
    EXPECT_TRUE(parse(deep(maxSessionDepth - 1)).document);
    const std::vector<std::pair<QByteArray, const char*>> cases{
        {"", "The file is empty."},
        {"[1]", "The file is not a session: its top level is not an object."},
        {"5", "The file is not a session: its top level is not an object."},
        {"\xEF\xBB\xBF{}", "The file begins with a byte-order mark, which is not valid JSON."},
        {"{\n\"x\":\"\xff\"}", "The file is damaged in line 2, at “x”: it holds bytes that are not text."},
        {"{} {}", "Something follows the end of the session."},
        {"{}\n}", "Something follows the end of the session."},
        {deep(maxSessionDepth), "The file is damaged in line 1, at “x”: nested too deep."},
        {deep(10'000), "The file is damaged in line 1, at “x”: nested too deep."},
        {QByteArray("{\"x\":1}").append(4, '\0'), "The file is damaged in line 1, at “x”: "},
        {"{\n\"x\": 1,\n\"y\": [tru\n]}", "The file is damaged in line 3, at “y”: not true or false."},
        {"{\n\"passes\": [{\"id\": 5,\n\"name\": nul\n}]}",
         "The file is damaged in line 3, at “name”: something is missing"},
        {"{\"x\": 1,\n\"y\": 2\n\"z\": 3}", "The file is damaged in line 3, at “y”: something is missing"},
        {"{\n\"x\": \"a\n\", \"y\": 1}", "The file is damaged in line 2, at “x”: a text is never closed."},
        {"{\n\"x\": \"a", "The file is damaged in line 2, at “x”: a text is never closed."},
        {"{\"x\": 1", "The file is damaged in line 1, at “x”: the file ends too soon."},
        {"not json", "The file is not"},
        {QByteArray(100'000, '['), "The file is not"},
        {QByteArray("{\"passes\":") + QByteArray(10'000, '['), "The file is damaged in line 1, at “passes”"},
        {QByteArray("{\"x\":") + QByteArray("{\"x\":").repeated(10'000), "The file is damaged in line 1, at “x”"},
    };
    for (const auto& [text, error] : cases) {
        const SessionReadResult result = parse(text);
        EXPECT_FALSE(result.document) << text.left(60).constData();
        EXPECT_TRUE(result.error.startsWith(QString::fromUtf8(error)))
            << text.left(60).constData() << ": " << qUtf8Printable(result.error);
    }
}

TEST(SessionReader, ReadsOnlyRegularFiles) {
    const QTemporaryDir folder;
    const auto error = [&](const char* name) { return readSession(folder.filePath(QLatin1String(name)), now).error; };
    EXPECT_TRUE(error("absent").contains(QStringLiteral("No such file")));
    EXPECT_EQ(error("."), QStringLiteral("This is a folder, not a session file."));
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("pipe"))).constData(), 0600), 0);
    EXPECT_EQ(error("pipe"), QStringLiteral("This is not a regular file."));
    EXPECT_EQ(readSession(QStringLiteral("/dev/zero"), now).error, QStringLiteral("This is not a regular file."));
    ASSERT_TRUE(writeFile(folder.filePath(QStringLiteral("empty")), {}));
    EXPECT_EQ(error("empty"), QStringLiteral("The file is empty."));
    QFile large(folder.filePath(QStringLiteral("large")));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(5'000'000'000));
    EXPECT_EQ(error("large"), QStringLiteral("The file is too large: a session is smaller than 4 GiB."));
}

template <SavedRecord Record>
bool fieldsStandInDeclaredOrder() {
    const Record record{};
    const char* last = nullptr;
    bool ordered = true;
    const auto check = [&](const auto& field) {
        const auto* at = reinterpret_cast<const char*>(&(record.*field.member));
        ordered = ordered && at > last;
        last = at;
    };
    std::apply([&](const auto&... field) { (check(field), ...); }, recordFields<Record>);
    return ordered;
}

// A key that names the wrong member would be read and written the same wrong way.
TEST(SessionReader, KeysStandInTheOrderOfTheirMembers) {
    EXPECT_TRUE(fieldsStandInDeclaredOrder<ManualChannelSettings>());
    EXPECT_TRUE(fieldsStandInDeclaredOrder<MasterSectionSettings>());
    EXPECT_TRUE(fieldsStandInDeclaredOrder<EffectsReturnSettings>());
    EXPECT_TRUE(fieldsStandInDeclaredOrder<ChannelSwitches>());
    EXPECT_TRUE(fieldsStandInDeclaredOrder<ChannelSnapshot>());
    EXPECT_TRUE(fieldsStandInDeclaredOrder<TimecodePosition>());
    EXPECT_TRUE(fieldsStandInDeclaredOrder<AutomationPass>());
}

TEST(SessionWriter, RefusesWhatJSONCannotHold) {
    SessionDocument session = SessionDocument::empty(second(0));
    session.masterSection.aux1Level = std::nan("");
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_NE(writeSession(session, buffer), QString());
}

} // namespace
} // namespace tessik
