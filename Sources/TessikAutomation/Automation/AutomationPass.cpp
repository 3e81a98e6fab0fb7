#include "TessikAutomation/Automation/AutomationPass.h"

#include <algorithm>

namespace tessik {

std::int64_t AutomationPass::offsetOf(std::int64_t tapeFrame, std::int64_t length) const {
    const std::int64_t day = labelsPerDay(frameRate);
    const std::int64_t offset = tapeFrame - startTimecode.totalFrames();
    if (length >= day) return offset;
    const std::int64_t earliest = (length - day) / 2;
    const std::int64_t rest = (offset - earliest) % day;
    return earliest + (rest < 0 ? rest + day : rest);
}

void AutomationPass::sortEvents() {
    const auto isEarlier = [](const TimedEvent& a, const TimedEvent& b) { return a.frameOffset < b.frameOffset; };
    if (std::is_sorted(events.cbegin(), events.cend(), isEarlier)) return; // and stay shared
    std::stable_sort(events.begin(), events.end(), isEarlier);
}

} // namespace tessik
