#pragma once

#include <QMargins>

/// All geometry of the window, in logical pixels. What is a widget stands at multiples of `grid`, so that device pixel
/// ratios of 1.25, 1.5 and 1.75 leave no seams between widgets.
namespace tessik::Metrics {

inline constexpr int grid = 4;
constexpr int toGrid(int length) { return length / grid * grid; }

// ---- the window
inline constexpr int headerHeight = 72;
inline constexpr int bannerHeight = 40;
inline constexpr int railHeight = 20; ///< below the strips: scroll bar and MIDI status
inline constexpr int minWindowWidth = 1040;
inline constexpr int minWindowHeight = 560;

// ---- the desk
inline constexpr int inputChannelStripWidth = 88;
inline constexpr int maxInputChannelStripWidth = 112; ///< where the window is wider than the inputs
inline constexpr int groupStripWidth = 72;
inline constexpr int stereoStripWidth = 88;
inline constexpr int channelStripSpacing = 0;
inline constexpr int deskDivider = 4; ///< between the scrolling inputs and the fixed strips

// ---- a channel strip below the manual controls
inline constexpr int stripMargin = 6;
inline constexpr int barHeight = 32;
inline constexpr int barShadowHeight = 10;
inline constexpr int keyHeight = 22;
inline constexpr int keyPitch = 26;
inline constexpr int keysTop = barHeight + 12;
inline constexpr int faderTop = keysTop + 3 * keyPitch + 8;
inline constexpr int muteHeight = 24;
inline constexpr int nullHeight = 18;
inline constexpr int readoutHeight = 20;
inline constexpr int rowGap = 5;
inline constexpr int stripBottom = 8;
inline constexpr int minFaderHeight = 180;

// ---- a fader
inline constexpr int capWidth = 30;
inline constexpr int capHeight = 54;
inline constexpr int grooveWidth = 6;
inline constexpr int faderScaleWidth = 34;
inline constexpr int grooveGap = 5;      ///< from the groove to its ticks
inline constexpr int minTickSpacing = 4; ///< closer marks are left out
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
