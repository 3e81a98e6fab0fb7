#pragma once

#include "TessikAutomation/Application/Application.h"

#include <map>

namespace tessik {

/// A value that changes along the tape.
class TapeCurve {
public:
    /// From `frame` on; frames ascend.
    void add(double frame, int value) { _points.emplace_back(frame, value); }
    /// The value at a frame; before the first point, that point's.
    int at(double frame) const;
    /// The distance from a value to the nearest that the curve had between two frames.
    int distance(int value, double from, double to) const;

private:
    std::vector<std::pair<double, int>> _points;
};

/// By controller.
using TapeCurves = std::map<int, TapeCurve>;

/// As long as it lives, records what the rig's desk holds on some controllers, against the tape's true position.
class DeskWatch {
public:
    DeskWatch(Rig& rig, const std::vector<int>& controllers);

    const TapeCurves& curves() const { return _curves; }

private:
    void look();

    Rig& _rig;
    TapeCurves _curves;
    std::map<int, int> _last;
    Signal<>::Connection _listener;
};

/// What the rig's desk holds on a controller of one of its channels.
int deskValue(const SimulatedConsole& desk, int cc);

} // namespace tessik
