#pragma once

#include <QMargins>

/// All geometry of the window, in logical pixels. Widgets are placed at multiples of `grid`, so that device pixel
/// ratios of 1.25, 1.5 and 1.75 leave no seams between them.
namespace tessik::Metrics {

inline constexpr int grid = 4;
constexpr int toGridUp(int length) { return (length + grid - 1) / grid * grid; }
constexpr int toGrid(int length) { return length / grid * grid; }

// ---- the window
inline constexpr int headerHeight = 72;          ///< of its only or upper row
inline constexpr int headerSecondRowHeight = 44; ///< in narrow windows
inline constexpr int railHeight = 20;            ///< below the strips: scroll bar and MIDI status
inline constexpr int minWindowWidth = 1024;

// ---- the desk
inline constexpr int inputChannelStripWidth = 96;
inline constexpr int maxInputChannelStripWidth = 112; ///< where the window is wider than the inputs
inline constexpr int groupStripWidth = 64;
inline constexpr int stereoStripWidth = 96;
inline constexpr int foldedStripWidth = 36; ///< of stereo and groups beside a folded master section
inline constexpr int channelStripSpacing = 0;
inline constexpr int minInputsBarWidth = 160; ///< what the MIDI status leaves for the scroll bar beside it
inline constexpr int deskDivider = 12;   ///< between the scrolling inputs and the fixed strips: scroll bar and fold key
inline constexpr int masterBarWidth = 8; ///< the same for the master section, in its margin

// ---- a channel strip above the bar
inline constexpr int moduleTop = 5;
inline constexpr int moduleBottom = 0;
inline constexpr int sectionGap = 6;
inline constexpr int sectionTitleHeight = 11;
inline constexpr int sectionTitlePitch = 14;
inline constexpr int keyHeight = 19;
inline constexpr int keyPitch = 22;
inline constexpr int keyGap = 3;
inline constexpr int knobPitch = 44;
inline constexpr int miniFaderHeight = 64;

// ---- a channel strip from its BYPASS down
inline constexpr int stripMargin = 6;
inline constexpr int narrowStripMargin = 3; ///< of groups
inline constexpr int eqBesideWidth = 18;
inline constexpr int bypassTop = 3;
inline constexpr int barTop = bypassTop + keyHeight + 4;
inline constexpr int barHeight = 44;
inline constexpr int barShadowHeight = 10;
inline constexpr int numberHeight = 21;
inline constexpr int scribbleHeight = 18;
inline constexpr int mutesTitleTop = barTop + barHeight + 6;
inline constexpr int mutesTop = mutesTitleTop + 12;
inline constexpr int faderTop = mutesTop + keyHeight + 7;
inline constexpr int foldedMutesTop = barTop + barHeight + 3; ///< one above the other
inline constexpr int foldedKeyHeight = 18;
inline constexpr int muteHeight = 22;
inline constexpr int nullHeight = 16;
inline constexpr int readoutHeight = 18;
inline constexpr int rowGap = 4;
inline constexpr int stripBottom = 6;
inline constexpr int minFaderHeight = 160;
inline constexpr int minStripHeight =
    faderTop + minFaderHeight + rowGap + muteHeight + rowGap + nullHeight + rowGap + readoutHeight + stripBottom;

// ---- a fader
inline constexpr int capWidth = 30;
inline constexpr int capHeight = 54;
inline constexpr int grooveWidth = 6;
inline constexpr int faderScaleWidth = 34;
inline constexpr int grooveGap = 5;   ///< from the groove to its ticks
inline constexpr int scaleMargin = 3; ///< minimum, beside the scale
inline constexpr int narrowTick = 8;
inline constexpr int minLabelWidth = 12;
inline constexpr int minTickSpacing = 4; ///< marks that are closer are omitted
inline constexpr int minLabelSpacing = 10;
inline constexpr int dragThreshold = 3; ///< a click that moves less leaves a fader where it is

// ---- knobs and short faders
inline constexpr int knobDiameter = 27;
inline constexpr int knobLegendHeight = 11;
inline constexpr int miniCapHeight = 12;
inline constexpr int miniFaderScaleWidth = 16;

// ---- lamps
inline constexpr int lampWidth = 10;
inline constexpr int lampHeight = 3;

// ---- sheets
inline constexpr int settingsWidth = 460;
inline constexpr int settingsHeight = 520;

} // namespace tessik::Metrics
