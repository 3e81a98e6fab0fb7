#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"

namespace tessik {

/// A take that is in no pass store yet: being recorded, or waiting for its name. Handing it over copies no event.
struct PendingTake {
    AutomationPass pass;             ///< its `events` come before those of the chunks
    QList<QList<TimedEvent>> chunks; ///< what has grown since, in order

    qsizetype eventCount() const {
        qsizetype count = pass.events.size();
        for (const QList<TimedEvent>& chunk : chunks)
            count += chunk.size();
        return count;
    }
    /// As it would be stored.
    AutomationPass finished() const {
        AutomationPass whole = pass;
        for (const QList<TimedEvent>& chunk : chunks)
            whole.events += chunk;
        whole.sortEvents();
        if (whole.name.isEmpty()) whole.name = QStringLiteral("Recovered take");
        return whole;
    }
};

} // namespace tessik
