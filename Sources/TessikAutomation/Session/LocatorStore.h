#pragma once

#include "TessikKit/Models/TimecodePosition.h"

#include <QProperty>

#include <functional>
#include <optional>

namespace tessik {

/// The session's two locate points, either of which may be unset. Main thread only.
class LocatorStore {
public:
    using Locator = std::optional<TimecodePosition>;

    Locator start() const { return _start; }
    Locator end() const { return _end; }
    /// Every assignment calls `onChange`, even with an equal position.
    void setStart(const Locator& position) { assign(_start, position); }
    void setEnd(const Locator& position) { assign(_end, position); }
    /// For observing; write through the setters.
    QBindable<Locator> bindableStart() const { return QBindable<Locator>(&_start); }
    QBindable<Locator> bindableEnd() const { return QBindable<Locator>(&_end); }

    std::function<void()> onChange;

private:
    void assign(QProperty<Locator>& locator, const Locator& position) {
        locator = position;
        if (onChange) onChange();
    }

    QProperty<Locator> _start{std::nullopt};
    QProperty<Locator> _end{std::nullopt};
};

} // namespace tessik
