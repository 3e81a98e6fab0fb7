#pragma once

#include "TessikKit/Models/UptimeClock.h"

#include <optional>
#include <vector>

namespace tessik {

/// Limits screen reader announcements to five values a second per control. The last value of a movement is always
/// announced.
class ValueAnnouncer {
public:
    static constexpr Uptime interval = std::chrono::milliseconds(200);

    explicit ValueAnnouncer(std::size_t controls) : _controls(controls) {}

    /// Notes a change; true if it may be announced at once.
    bool note(std::size_t index, Uptime now);
    /// When the next value that had to wait is due.
    std::optional<Uptime> nextDue() const;
    /// The controls whose waiting values are due; they count as announced.
    std::vector<std::size_t> takeDue(Uptime now);

private:
    struct Control {
        Uptime told = distantPast;
        bool waiting = false;
    };
    std::vector<Control> _controls;
};

} // namespace tessik
