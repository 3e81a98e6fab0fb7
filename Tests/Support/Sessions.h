#pragma once

#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/SessionDocument.h"

#include <QFile>

#include <random>

namespace tessik {

inline QString testData(const char* name) { return QStringLiteral(TESSIK_TEST_DATA "/") + QString::fromLatin1(name); }

inline QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no such file>");
}

inline bool writeFile(const QString& path, const QByteArray& text) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

/// A date of a session, as records hold them.
inline QDateTime second(qint64 seconds) { return dateOfSecond(1'767'621'802 + seconds); }

/// A session with every kind of record and every field different from its default; each seed gives another one.
inline SessionDocument sampleSession(unsigned seed, int passes = 2, int eventsAPass = 5) {
    std::mt19937 random(seed);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const auto date = [&] { return second(number(0, 1'000'000)); };
    const auto text = [&](const char* what) {
        return QStringLiteral("%1 “%2” \\").arg(QLatin1String(what)).arg(number(0, 999));
    };
    const auto fill = [&]<SavedRecord Record>(Record& record) {
        const auto one = [&]<typename Value>(Value& value) {
            if constexpr (std::is_same_v<Value, bool>) value = number(0, 1) == 1;
            if constexpr (std::is_same_v<Value, double>)
                value = std::uniform_real_distribution<double>(-1e4, 1e4)(random);
        };
        std::apply([&](const auto&... field) { (one(record.*field.member), ...); }, recordFields<Record>);
        return record;
    };
    const auto kind = [&] {
        const int n = number(1, 41);
        return n <= 32 ? ChannelKind::input(n) : n <= 40 ? ChannelKind::group(n - 32) : ChannelKind::stereo();
    };
    const auto manual = [&] {
        ManualChannelSettings settings;
        return fill(settings);
    };
    const auto id = [&] {
        return QUuid(unsigned(number(0, 0x7FFFFFFF)), 0, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, uchar(number(0, 255)));
    };
    const auto position = [&] {
        return TimecodePosition{MTCFrameRate(number(0, 3)), number(0, 30), number(0, 59), number(0, 59), number(0, 23)};
    };
    const auto channel = [&] {
        ChannelSnapshot entry;
        fill(entry);
        entry.kind = kind();
        entry.faderValue = number(0, 127);
        if (number(0, 1)) entry.manualSettings = manual();
        return entry;
    };

    SessionDocument document = SessionDocument::empty(date());
    document.modifiedAt = date();
    for (int i = 0; i < 2; ++i)
        document.snapshots.append(
            {.id = id(), .name = text("Snapshot"), .createdAt = date(), .channels = {channel(), channel()}});
    for (int i = 0; i < passes; ++i) {
        AutomationPass pass{.id = id(), .name = text("Pass"), .createdAt = date()};
        pass.frameRate = MTCFrameRate(number(0, 3));
        pass.startTimecode = position();
        pass.events.reserve(eventsAPass);
        for (int event = 0; event < eventsAPass; ++event) {
            ChannelSwitches switches;
            pass.events.append(
                {event * 3, kind(),
                 number(0, 4) ? PassEventValue::fader(number(0, 127)) : PassEventValue::switches(fill(switches))});
        }
        if (i % 2) pass.initialState = QList<ChannelSnapshot>{channel()};
        document.passes.append(pass);
    }
    document.channelLabels = {{QStringLiteral("input-1"), {text("Kick"), QStringLiteral("E0553F")}},
                              {QStringLiteral("stereo"), {QString(), QStringLiteral("no colour")}}};
    document.manualSettings = {{QStringLiteral("group-8"), manual()}, {QStringLiteral("input-10"), manual()}};
    fill(document.masterSection);
    for (EffectsReturnSettings& effects : document.masterSection.effectsReturns)
        fill(effects);
    document.defaultSnapshotID = document.snapshots.last().id;
    document.startLocator = position();
    document.endLocator = position();
    return document;
}

} // namespace tessik
