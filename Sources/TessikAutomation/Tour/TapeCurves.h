#pragma once

#include "TessikAutomation/Views/Application.h"

#include <map>

namespace tessik {

/// A value that changes along the tape.
class TapeCurve {
public:
    /// From `frame` on; frames ascend.
    void add(double frame, int value) { _points.emplace_back(frame, value); }
    /// At a frame; before the first point, what that one says.
    int at(double frame) const;
    /// How far a value is from everything that the curve was between two frames.
    int distance(int value, double from, double to) const;

private:
    std::vector<std::pair<double, int>> _points;
};

/// By controller.
using TapeCurves = std::map<int, TapeCurve>;

/// Writes down what the rig's desk holds on some controllers, against where its tape truly is, as long as it lives.
class DeskWatch {
public:
    DeskWatch(Rig& rig, const std::vector<int>& controllers);
    ~DeskWatch() { _rig.desk.onChange = nullptr; }
    DeskWatch(const DeskWatch&) = delete;
    DeskWatch& operator=(const DeskWatch&) = delete;

    const TapeCurves& curves() const { return _curves; }

private:
    void look();

    Rig& _rig;
    TapeCurves _curves;
    std::map<int, int> _last;
};

/// What the rig's desk holds on a controller of a channel that it has.
int deskValue(const SimulatedConsole& desk, int cc);

} // namespace tessik
