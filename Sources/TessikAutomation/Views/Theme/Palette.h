#pragma once

#include <QColor>

#include <cstdint>

namespace tessik {

enum class ColorScheme : std::uint8_t { dark, light };

/// The console's named colours. Several are translucent, meant to be laid over `appBackground`.
struct Palette {
    QColor appBackground;
    QColor masterPanelBackground;
    QColor channelStripBackground;
    QColor faderBankBackground;
    QColor dividerColor;
    QColor switchOffFill;
    QColor tickColor;
    QColor grooveColor;

    static const Palette& dark();
    static const Palette& light();
    static const Palette& of(ColorScheme scheme) { return scheme == ColorScheme::dark ? dark() : light(); }
};

} // namespace tessik
