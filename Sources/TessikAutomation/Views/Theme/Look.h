#pragma once

#include "TessikAutomation/Views/Theme/Palette.h"

namespace tessik {

/// Colours that the palette does not name: light, print, lamps and displays. Legends keep a contrast of at least 4.5:1
/// to their background, ticks 1.6:1.
struct Tints {
    QColor text;          ///< titles
    QColor secondaryText; ///< status lines
    QColor legend;        ///< print on panels and unlit keys
    QColor moduleLegend;  ///< print on the modules above the bar
    QColor litLegend;     ///< print on a lit key
    QColor scaleZero;     ///< the 0 dB row of a fader scale
    QColor fineTick;      ///< between the marks of a fader scale
    QColor knobTick;      ///< around a knob
    QColor slotFloor;     ///< of a fader
    QColor edgeLight;     ///< the lit upper edge of a raised part
    QColor edgeShadow;    ///< the outline of a part against the panel
    QColor headerTop;
    QColor headerBottom;
    QColor page;      ///< of the manual
    QColor aluminium; ///< middle tone of the brushed bar
    QColor aluminiumPrint;
    QColor displayBackground;
    QColor display; ///< lit segments
    QColor displayDim;
    QColor focusRing;
    QColor warning;
    QColor active; ///< print that shows that something is running

    QColor ledGreen;
    QColor ledAmber;
    QColor ledRed;
    QColor ledYellow;
    QColor ledBlue;
    QColor unlitArrow;  ///< a NULL arrow that is off
    QColor arrowWindow; ///< behind the NULL arrows

    QColor capLine;   ///< the index line of a fader cap
    QColor groupLine; ///< of the groups
    QColor stereoLine;
};

/// Everything drawn follows one of two looks.
struct Look {
    ColorScheme scheme;
    const Palette& palette;
    Tints tints;

    /// The frame of the desk, around and between the strips.
    QColor railColor() const;
    /// Between two blocks of strips.
    QColor gapColor() const;
    bool isDark() const { return scheme == ColorScheme::dark; }
    static const Look& of(ColorScheme scheme);
};

/// A colour between two, `t` 0 to 1.
QColor blend(const QColor& from, const QColor& to, double t);
/// Lays a translucent colour over an opaque one.
QColor over(const QColor& top, const QColor& bottom);
QColor withAlpha(QColor color, double alpha);

} // namespace tessik
