#include "TessikAutomation/Views/Theme/Palette.h"

namespace tessik {
namespace {

QColor grey(double level) { return QColor::fromRgbF(float(level), float(level), float(level)); }
QColor white(double opacity) { return QColor::fromRgbF(1, 1, 1, float(opacity)); }
QColor black(double opacity) { return QColor::fromRgbF(0, 0, 0, float(opacity)); }

} // namespace

const Palette& Palette::dark() {
    static const Palette palette{
        .appBackground = grey(0.11),
        .masterPanelBackground = QColor::fromRgbF(0.09f, 0.11f, 0.15f),
        .channelStripBackground = white(0.03),
        .faderBankBackground = white(0.03),
        .dividerColor = white(0.12),
        .switchOffFill = grey(0.15),
        .tickColor = grey(0.55),
        .grooveColor = black(0.55),
    };
    return palette;
}

const Palette& Palette::light() {
    static const Palette palette{
        .appBackground = grey(0.88),
        .masterPanelBackground = QColor(0x7C, 0x78, 0x75),
        .channelStripBackground = QColor(0x7C, 0x78, 0x75),
        .faderBankBackground = QColor(0xC1, 0xBC, 0xB6),
        .dividerColor = black(0.15),
        .switchOffFill = grey(0.78),
        .tickColor = grey(0.35),
        .grooveColor = black(0.35),
    };
    return palette;
}

} // namespace tessik
