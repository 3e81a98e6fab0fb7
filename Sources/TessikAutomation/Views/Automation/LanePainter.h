#pragma once

#include "TessikAutomation/Automation/PassLanes.h"
#include "TessikAutomation/ManualSettings/ChannelLabel.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"

namespace tessik {

/// Which stretch of a pass lies on a row of pixels.
struct LaneTimeline {
    TimecodePosition start;    ///< of the pass
    double firstOffset = 0;    ///< frames, at the left edge
    double framesPerPixel = 1; ///< logical pixels

    double offsetAt(double x) const { return firstOffset + x * framesPerPixel; }
    double xOf(double offset) const { return (offset - firstOffset) / framesPerPixel; }
    /// Frames between two labels of the ruler.
    std::int64_t labelStep() const;
};

/// One of the four switches as a lane shows it.
struct LaneSwitch {
    const char* name;
    bool ChannelSwitches::*member;
    QColor Tints::*color;
};
inline constexpr std::array laneSwitches{LaneSwitch{"MUTE", &ChannelSwitches::chanMuted, &Tints::ledRed},
                                         LaneSwitch{"MON", &ChannelSwitches::monMuted, &Tints::ledRed},
                                         LaneSwitch{"AUX", &ChannelSwitches::auxMuted, &Tints::ledRed},
                                         LaneSwitch{"EQ", &ChannelSwitches::eqOn, &Tints::ledGreen}};

/// Draws a pass: a ruler with timecode, and a lane for each channel. Rectangles are in logical pixels, positions along
/// the tape in those of the plot, which begins `headWidth` right of a lane's edge.
namespace LanePainter {

inline constexpr int headWidth = 148;
inline constexpr int rulerHeight = 32;
inline constexpr int plotEdge = 2; ///< that nothing is drawn on

/// Of a lane, with the gap below it.
int laneHeight(const PassLanes::Channel& channel);
/// Where the fader's curve is drawn in a lane.
QRect curveRect(const QRect& lane);

void paintRuler(Canvas& canvas, DrawingContext& drawing, const QRect& ruler, const LaneTimeline& timeline);
void paintLane(Canvas& canvas, DrawingContext& drawing, const QRect& lane, const PassLanes& lanes,
               const PassLanes::Channel& channel, const std::optional<ChannelLabel>& label,
               const LaneTimeline& timeline);

} // namespace LanePainter
} // namespace tessik
