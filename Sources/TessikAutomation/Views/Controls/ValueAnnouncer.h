#pragma once

#include "TessikKit/Models/UptimeClock.h"

#include <optional>
#include <vector>

namespace tessik {

/// Holds what a screen reader is told to five values a second and control. The last value of a movement is always told.
class ValueAnnouncer {
public:
    static constexpr Uptime interval = std::chrono::milliseconds(200);

    explicit ValueAnnouncer(std::size_t controls) : _controls(controls) {}

    /// Notes a change; true where it may be told at once.
    bool note(std::size_t control, Uptime now);
    /// When the next value that had to wait is due.
    std::optional<Uptime> nextDue() const;
    /// The controls whose waiting values are due; they count as told.
    std::vector<std::size_t> takeDue(Uptime now);

private:
    struct Control {
        Uptime told = distantPast;
        bool waiting = false;
    };
    std::vector<Control> _controls;
};

} // namespace tessik
