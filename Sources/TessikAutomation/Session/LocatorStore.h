#pragma once

#include "TessikKit/Models/Published.h"
#include "TessikKit/Models/TimecodePosition.h"

#include <functional>
#include <optional>

namespace tessik {

/// The session's two locate points, either of which may be unset. Main thread only.
class LocatorStore {
public:
    using Locator = std::optional<TimecodePosition>;

    Published<Locator, LocatorStore> start{std::nullopt};
    Published<Locator, LocatorStore> end{std::nullopt};
    /// Every assignment calls `onChange`, even with an equal position.
    void setStart(const Locator& position) { assign(start, position); }
    void setEnd(const Locator& position) { assign(end, position); }

    std::function<void()> onChange;

private:
    void assign(Published<Locator, LocatorStore>& locator, const Locator& position) {
        locator = position;
        if (onChange) onChange();
    }
};

} // namespace tessik
