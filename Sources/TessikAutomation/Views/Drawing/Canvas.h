#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QProperty>

namespace tessik {

/// Names a picture that is drawn once and then only copied: whose it is, its state, and its size on the device.
struct SpriteKey {
    const void* owner;
    std::uint32_t variant;
    QSize size; ///< device pixels

    friend bool operator==(const SpriteKey&, const SpriteKey&) = default;
};
inline std::size_t qHash(const SpriteKey& key, std::size_t seed = 0) {
    return qHashMulti(seed, key.owner, key.variant, key.size.width(), key.size.height());
}

class DrawingContext;

/// A painter whose unit is the device pixel, so that every edge falls on one. Views give their geometry in logical
/// pixels and convert it here.
class Canvas {
public:
    Canvas(QPainter& painterInDevicePixels, qreal devicePixelRatio, const Look& drawnLook, DrawingContext& context)
        : painter(painterInDevicePixels), scale(devicePixelRatio), look(drawnLook), _context(context) {}

    QPainter& painter;
    const qreal scale; ///< device pixels per unit of the views' geometry
    const Look& look;

    int px(qreal logical) const { return qRound(logical * scale); }
    /// At least one device pixel.
    int line(qreal logical = 1) const { return std::max(1, px(logical)); }
    QPoint px(QPointF logical) const { return {px(logical.x()), px(logical.y())}; }
    /// Adjacent rectangles stay adjacent.
    QRect px(const QRectF& logical) const {
        return QRect(px(logical.topLeft()), px(logical.bottomRight()) - QPoint(1, 1));
    }

    /// Copies a picture of `size` device pixels to `topLeft`; `draw(QPainter&)` makes it on first use, on a transparent
    /// background with the origin at its upper left corner.
    template <typename Draw>
    void sprite(const void* owner, std::uint32_t variant, QPoint topLeft, QSize size, Draw draw);

private:
    DrawingContext& _context;
};

/// What everything in one window draws with: the current look and the pictures drawn so far for it.
class DrawingContext {
public:
    QProperty<const Look*> look{&Look::of(ColorScheme::dark)};
    /// Logical pixels per unit of the views' geometry.
    QProperty<qreal> zoom{1};

    /// A canvas on a widget's painter, whose unit becomes the device pixel. Forgets pictures drawn for another look,
    /// pixel ratio or zoom.
    Canvas canvas(QPainter& painter, qreal devicePixelRatio);

    /// The static layer of a kind of panel; forgets the one of another size.
    template <typename Draw>
    const QPixmap& layer(const void* kind, QSize size, Draw draw) {
        QPixmap& layer = _layers[kind];
        if (layer.size() != size) layer = drawn(size, draw);
        return layer;
    }
    template <typename Draw>
    const QPixmap& sprite(const SpriteKey& key, Draw draw) {
        auto found = _sprites.constFind(key);
        if (found == _sprites.constEnd()) found = _sprites.insert(key, drawn(key.size, draw));
        return *found;
    }

private:
    template <typename Draw>
    static QPixmap drawn(QSize size, Draw draw) {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        draw(painter);
        return pixmap;
    }

    const Look* _drawnLook = nullptr;
    qreal _drawnScale = 0;
    QHash<const void*, QPixmap> _layers;
    QHash<SpriteKey, QPixmap> _sprites;
};

template <typename Draw>
void Canvas::sprite(const void* owner, std::uint32_t variant, QPoint topLeft, QSize size, Draw draw) {
    painter.drawPixmap(topLeft, _context.sprite({owner, variant, size}, draw));
}

} // namespace tessik
