#include "TessikAutomation/Views/Controls/ValueAnnouncer.h"

#include <algorithm>

namespace tessik {

bool ValueAnnouncer::note(std::size_t index, Uptime now) {
    Control& control = _controls[index];
    if (now - control.told < interval) {
        control.waiting = true;
        return false;
    }
    control = {now, false};
    return true;
}

std::optional<Uptime> ValueAnnouncer::nextDue() const {
    std::optional<Uptime> due;
    for (const Control& control : _controls)
        if (control.waiting) due = std::min(due.value_or(Uptime::max()), control.told + interval);
    return due;
}

std::vector<std::size_t> ValueAnnouncer::takeDue(Uptime now) {
    std::vector<std::size_t> due;
    for (std::size_t i = 0; i < _controls.size(); ++i) {
        Control& control = _controls[i];
        if (!control.waiting || now - control.told < interval) continue;
        control = {now, false};
        due.push_back(i);
    }
    return due;
}

} // namespace tessik
