#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"

namespace tessik {

/// A take that is not in the pass store yet: being recorded, or waiting for its name. Cheap to copy, so that it can be
/// written elsewhere while it grows.
struct PendingTake {
    AutomationPass pass;             ///< its `events` come before those of the chunks
    QList<QList<TimedEvent>> chunks; ///< what was added since, in order

    /// For rides over a pass, in which case `pass` is that pass under a new identity: the chunks hold each lane's new
    /// values (fader or switches of a channel) from its first touch to here, where it returns to what the pass says.
    struct Rides {
        std::int64_t end = 0;            ///< frame offset
        QList<ChannelSnapshot> baseline; ///< the state with which the pass starts
    };
    std::optional<Rides> rides;

    qsizetype eventCount() const;
    /// As it would be stored. Any thread.
    AutomationPass finished() const;
};

} // namespace tessik
