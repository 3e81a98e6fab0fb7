#pragma once

#include "TessikAutomation/Automation/TimedEvent.h"
#include "TessikAutomation/Snapshots/ChannelSnapshot.h"

#include <QDateTime>
#include <QList>
#include <QUuid>

namespace tessik {

/// One recorded take. Copies share their events until one of them writes.
struct AutomationPass {
    QUuid id;
    QString name;
    QDateTime createdAt; ///< UTC, whole seconds: when the take began
    MTCFrameRate frameRate = MTCFrameRate::fps30;
    TimecodePosition startTimecode; ///< frame 0 of every event's offset
    QList<TimedEvent> events;       ///< ascending by frame offset, and in recorded order at the same frame
    /// The console when the take began; absent in passes from older files, which start from the default snapshot.
    std::optional<QList<ChannelSnapshot>> initialState;

    /// Frames from the start to a frame of the tape, whose labels begin again at midnight: taken within the day around
    /// a pass of that length, so that a pass may cross midnight.
    std::int64_t offsetOf(std::int64_t tapeFrame, std::int64_t length) const;

    /// Brings events into their order, once a take is finished.
    void sortEvents();

    friend bool operator==(const AutomationPass&, const AutomationPass&) = default;
};

template <>
inline constexpr auto recordFields<AutomationPass> = std::tuple{
    RecordField{"id", &AutomationPass::id},
    RecordField{"name", &AutomationPass::name},
    RecordField{"createdAt", &AutomationPass::createdAt},
    RecordField{"frameRate", &AutomationPass::frameRate},
    RecordField{"startTimecode", &AutomationPass::startTimecode},
    RecordField{"events", &AutomationPass::events},
    RecordField{"initialState", &AutomationPass::initialState},
};

} // namespace tessik
