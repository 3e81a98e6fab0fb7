#include "TessikAutomation/Views/Drawing/Canvas.h"

namespace tessik {

Canvas DrawingContext::canvas(QPainter& painter, qreal devicePixelRatio) {
    if (_drawnLook != look.value() || _drawnRatio != devicePixelRatio) {
        _layers.clear();
        _sprites.clear();
        _drawnLook = look;
        _drawnRatio = devicePixelRatio;
    }
    painter.scale(1 / devicePixelRatio, 1 / devicePixelRatio);
    return Canvas(painter, devicePixelRatio, *_drawnLook, *this);
}

} // namespace tessik
