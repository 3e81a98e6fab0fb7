#include "TessikKit/Models/MTCFrameRate.h"

namespace tessik {

QString description(MTCFrameRate rate) {
    return rate == MTCFrameRate::fps30Drop ? QStringLiteral("29.97 fps (drop)")
                                           : QStringLiteral("%1 fps").arg(framesPerSecond(rate));
}

} // namespace tessik
