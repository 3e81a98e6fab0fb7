#pragma once

#include <QColor>

#include <cstdint>

namespace tessik {

enum class ColorScheme : std::uint8_t { dark, light };

/// The seventeen named colours of the console. Several are translucent and meant to be laid over `appBackground`.
struct Palette {
    QColor appBackground;
    QColor panelBackground;
    QColor inputPanelBackground;
    QColor masterPanelBackground;
    QColor stripBackground;
    QColor channelStripBackground;
    QColor faderBankBackground;
    QColor stripBorder;
    QColor panelBorder;
    QColor dividerColor;
    QColor switchOffFill;
    QColor switchStroke;
    QColor tickColor;
    QColor knurlColor;
    QColor knobStroke;
    QColor grooveColor;
    QColor faderTickColor;

    static const Palette& dark();
    static const Palette& light();
    static const Palette& of(ColorScheme scheme) { return scheme == ColorScheme::dark ? dark() : light(); }
};

} // namespace tessik
