#include "TessikAutomation/Views/Theme/Look.h"

namespace tessik {
namespace {

constexpr QColor hex(QRgb rgb) { return QColor(qRed(rgb), qGreen(rgb), qBlue(rgb)); }

Tints darkTints() {
    return {
        .text = hex(0xF2F2F2),
        .secondaryText = hex(0x9C9C9C),
        .legend = hex(0xB4B4B4),
        .moduleLegend = hex(0xBDBDBD),
        .litLegend = hex(0xFFFFFF),
        .scaleZero = hex(0xF4F4F4),
        .fineTick = withAlpha(Qt::white, 0.15),
        .knobTick = hex(0x707070),
        .slotFloor = hex(0x0C0C0C),
        .edgeLight = withAlpha(Qt::white, 0.22),
        .edgeShadow = hex(0x0F0F0F),
        .headerTop = hex(0x2B2B2B),
        .headerBottom = hex(0x1E1E1E),
        .page = hex(0x1C1C1C),
        .aluminium = hex(0xBEBEBE),
        .aluminiumPrint = hex(0x1A1A1A),
        .displayBackground = hex(0x0B0A08),
        .display = hex(0xFFB340),
        .displayDim = hex(0xA8762C),
        .focusRing = hex(0x5AB0FF),
        .warning = hex(0xFF9F2E),
        .active = hex(0x6FF08C),
        .ledGreen = hex(0x6FF08C),
        .ledAmber = hex(0xFFC04D),
        .ledRed = hex(0xFF5A48),
        .ledYellow = hex(0xFFE04A),
        .ledBlue = hex(0x7DB8FF),
        .unlitArrow = withAlpha(Qt::black, 0.4),
        .arrowWindow = hex(0x2A2A2A),
        .capLine = hex(0xF7F7F7),
        .groupLine = hex(0x74B4FF),
        .stereoLine = hex(0xFF6A58),
    };
}

Tints lightTints() {
    Tints tints = darkTints();
    tints.text = hex(0x1C1B1A);
    tints.secondaryText = hex(0x4C4946);
    tints.legend = hex(0x2E2C2A);
    tints.moduleLegend = hex(0x000000);
    tints.scaleZero = hex(0x000000);
    tints.fineTick = withAlpha(Qt::black, 0.3);
    tints.knobTick = hex(0x383634);
    tints.slotFloor = hex(0x3A3734);
    tints.edgeLight = withAlpha(Qt::white, 0.75);
    tints.edgeShadow = hex(0x6E6A66);
    tints.headerTop = hex(0xECEBE9);
    tints.headerBottom = hex(0xD6D4D1);
    tints.page = hex(0xF8F7F5);
    tints.aluminium = hex(0xD2D2D2);
    tints.focusRing = hex(0x0A6CE0);
    tints.warning = hex(0x8A4000);
    tints.active = hex(0x07642A);
    tints.ledGreen = hex(0x2BD45E);
    tints.ledAmber = hex(0xFFA81F);
    tints.ledRed = hex(0xF0402C);
    tints.arrowWindow = hex(0x4A4744);
    return tints;
}

} // namespace

const Look& Look::of(ColorScheme scheme) {
    static const Look dark{ColorScheme::dark, Palette::dark(), darkTints()};
    static const Look light{ColorScheme::light, Palette::light(), lightTints()};
    return scheme == ColorScheme::dark ? dark : light;
}

QColor Look::gapColor() const { return isDark() ? QColor(8, 8, 8) : blend(railColor(), Qt::black, 0.5); }
QColor Look::railColor() const { return blend(palette.appBackground, Qt::black, isDark() ? 0.45 : 0.14); }

QColor blend(const QColor& from, const QColor& to, double t) {
    const auto mix = [t](float a, float b) { return float(a + (b - a) * t); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()), mix(from.blueF(), to.blueF()),
                            mix(from.alphaF(), to.alphaF()));
}

QColor over(const QColor& top, const QColor& bottom) {
    QColor opaque = top;
    opaque.setAlphaF(1);
    return blend(bottom, opaque, double(top.alphaF()));
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(float(alpha));
    return color;
}

} // namespace tessik
