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
        .panelBackground = grey(0.11),
        .inputPanelBackground = white(0.02),
        .masterPanelBackground = QColor::fromRgbF(0.09f, 0.11f, 0.15f),
        .stripBackground = white(0.03),
        .channelStripBackground = white(0.03),
        .faderBankBackground = white(0.03),
        .stripBorder = white(0.06),
        .panelBorder = white(0.08),
        .dividerColor = white(0.12),
        .switchOffFill = grey(0.15),
        .switchStroke = grey(0.55),
        .tickColor = grey(0.55),
        .knurlColor = black(0.35),
        .knobStroke = black(0.70),
        .grooveColor = black(0.55),
        .faderTickColor = white(0.15),
    };
    return palette;
}

const Palette& Palette::light() {
    static const Palette palette{
        .appBackground = grey(0.88),
        .panelBackground = grey(0.88),
        .inputPanelBackground = black(0.02),
        .masterPanelBackground = QColor(0x7C, 0x78, 0x75),
        .stripBackground = black(0.03),
        .channelStripBackground = QColor(0x7C, 0x78, 0x75),
        .faderBankBackground = QColor(0xC1, 0xBC, 0xB6),
        .stripBorder = black(0.12),
        .panelBorder = black(0.15),
        .dividerColor = black(0.15),
        .switchOffFill = grey(0.78),
        .switchStroke = grey(0.40),
        .tickColor = grey(0.35),
        .knurlColor = black(0.25),
        .knobStroke = black(0.50),
        .grooveColor = black(0.35),
        .faderTickColor = black(0.15),
    };
    return palette;
}

} // namespace tessik
