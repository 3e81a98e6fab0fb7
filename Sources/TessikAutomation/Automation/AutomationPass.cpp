#include "TessikAutomation/Automation/AutomationPass.h"

#include <algorithm>

namespace tessik {

void AutomationPass::sortEvents() {
    std::stable_sort(events.begin(), events.end(),
                     [](const TimedEvent& a, const TimedEvent& b) { return a.frameOffset < b.frameOffset; });
}

} // namespace tessik
