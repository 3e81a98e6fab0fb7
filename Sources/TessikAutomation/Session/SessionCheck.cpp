#include "TessikAutomation/Session/SessionCheck.h"

#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <algorithm>

namespace tessik {
namespace {

QString counted(qsizetype count, const char* one, const char* many) {
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

QString locator(const std::optional<TimecodePosition>& position) {
    return position ? QStringLiteral("%1 at %2").arg(position->displayString(), description(position->frameRate))
                    : QStringLiteral("none");
}

QString describeDefault(const SessionDocument& document) {
    if (!document.defaultSnapshotID) return QStringLiteral("none");
    const auto found = std::find_if(document.snapshots.begin(), document.snapshots.end(),
                                    [&](const Snapshot& one) { return one.id == document.defaultSnapshotID; });
    return found == document.snapshots.end() ? QStringLiteral("names no snapshot of the file")
                                             : QStringLiteral("“%1”").arg(found->name);
}

QStringList describe(const SessionDocument& document) {
    QStringList lines{QStringLiteral("format %1, created %2, modified %3")
                          .arg(document.formatVersion)
                          .arg(document.createdAt.toString(Qt::ISODate), document.modifiedAt.toString(Qt::ISODate)),
                      counted(document.snapshots.size(), "snapshot", "snapshots")};
    for (const Snapshot& snapshot : document.snapshots)
        lines +=
            QStringLiteral("  “%1”: %2").arg(snapshot.name, counted(snapshot.channels.size(), "channel", "channels"));
    lines += QStringLiteral("default snapshot: ") + describeDefault(document);
    lines += counted(document.passes.size(), "pass", "passes");
    for (const AutomationPass& pass : document.passes)
        lines += QStringLiteral("  “%1”: from %2 at %3, %4, %5")
                     .arg(pass.name, pass.startTimecode.displayString(), description(pass.frameRate),
                          counted(pass.events.size(), "event", "events"),
                          pass.initialState ? QStringLiteral("starting state of %1")
                                                  .arg(counted(pass.initialState->size(), "channel", "channels"))
                                            : QStringLiteral("no starting state"));
    lines += counted(document.channelLabels.size(), "channel label", "channel labels");
    lines += QStringLiteral("manual settings of ") + counted(document.manualSettings.size(), "channel", "channels");
    lines +=
        QStringLiteral("master section %1, with %2")
            .arg(document.masterSection == MasterSectionSettings() ? QStringLiteral("zeroed") : QStringLiteral("set"),
                 counted(document.masterSection.effectsReturns.size(), "effects return", "effects returns"));
    lines += QStringLiteral("START locator: ") + locator(document.startLocator);
    lines += QStringLiteral("END locator: ") + locator(document.endLocator);
    return lines;
}

} // namespace

SessionCheckResult checkSession(const QString& path) {
    const SessionReadResult read = readSession(path, currentSecond());
    if (!read.document) return {QStringLiteral("%1: cannot be opened\n  %2\n").arg(path, read.error), 2};
    QString text = path + QStringLiteral(": a session\n");
    for (const QString& line : describe(*read.document))
        text += QStringLiteral("  %1\n").arg(line);
    for (const QString& key : read.unknownKeys)
        text += QStringLiteral("  unknown key \"%1\": ignored\n").arg(key);
    for (const SessionReadResult::Fallback& fallback : read.fallbacks)
        text += QStringLiteral("  \"%1\" fell back to its default: %2%3\n")
                    .arg(fallback.key, fallback.reason,
                         fallback.line > 0 ? QStringLiteral(" (line %1)").arg(fallback.line) : QString());
    if (read.fallbacks.empty()) return {text + QStringLiteral("clean\n"), 0};
    return {text, 1};
}

} // namespace tessik
