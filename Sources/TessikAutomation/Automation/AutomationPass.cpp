#include "TessikAutomation/Automation/AutomationPass.h"

#include <algorithm>

namespace tessik {

void AutomationPass::sortEvents() {
    const auto isEarlier = [](const TimedEvent& a, const TimedEvent& b) { return a.frameOffset < b.frameOffset; };
    if (std::is_sorted(events.cbegin(), events.cend(), isEarlier)) return; // and stay shared
    std::stable_sort(events.begin(), events.end(), isEarlier);
}

} // namespace tessik
