#include "TessikAutomation/Views/Drawing/Canvas.h"

namespace tessik {

Canvas DrawingContext::canvas(QPainter& painter, qreal devicePixelRatio) {
    const qreal scale = devicePixelRatio * zoom;
    if (_drawnLook != look.value() || _drawnScale != scale) {
        _layers.clear();
        _sprites.clear();
        _drawnLook = look;
        _drawnScale = scale;
    }
    painter.scale(1 / devicePixelRatio, 1 / devicePixelRatio);
    return Canvas(painter, scale, *_drawnLook, *this);
}

} // namespace tessik
