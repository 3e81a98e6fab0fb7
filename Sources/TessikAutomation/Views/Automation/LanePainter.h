#pragma once

#include "TessikAutomation/Automation/PassLanes.h"
#include "TessikAutomation/ManualSettings/ChannelLabel.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"

namespace tessik {

/// The stretch of a pass that a row of pixels shows.
struct LaneTimeline {
    TimecodePosition start;    ///< of the pass
    double firstOffset = 0;    ///< frames, at the left edge
    double framesPerPixel = 1; ///< logical pixels

    double offsetAt(double x) const { return firstOffset + x * framesPerPixel; }
    double xOf(double offset) const { return (offset - firstOffset) / framesPerPixel; }
    /// Frames between two ruler labels.
    std::int64_t labelStep() const;
};

/// One of the four switches as shown in a lane.
struct LaneSwitch {
    const char* name;
    bool ChannelSwitches::*member;
    QColor Tints::*color;
};
inline constexpr std::array laneSwitches{LaneSwitch{"MUTE", &ChannelSwitches::chanMuted, &Tints::ledRed},
                                         LaneSwitch{"MON", &ChannelSwitches::monMuted, &Tints::ledRed},
                                         LaneSwitch{"AUX", &ChannelSwitches::auxMuted, &Tints::ledRed},
                                         LaneSwitch{"EQ", &ChannelSwitches::eqOn, &Tints::ledGreen}};

/// Draws a pass: a ruler with timecode, and a lane for each channel. Rectangles are in logical pixels; positions along
/// the tape are in pixels of the plot, which begins `headWidth` to the right of a lane's edge.
namespace LanePainter {

inline constexpr int headWidth = 148;
inline constexpr int rulerHeight = 32;
inline constexpr int plotEdge = 2; ///< where nothing is drawn

/// The height of a lane, including the gap below it.
int laneHeight(const PassLanes::Channel& channel);
/// The area of a lane where the fader's curve is drawn.
QRect curveRect(const QRect& lane);

void paintRuler(Canvas& canvas, DrawingContext& drawing, const QRect& ruler, const LaneTimeline& timeline);
void paintLane(Canvas& canvas, DrawingContext& drawing, const QRect& lane, const PassLanes& lanes,
               const PassLanes::Channel& channel, const std::optional<ChannelLabel>& label,
               const LaneTimeline& timeline);

} // namespace LanePainter
} // namespace tessik
