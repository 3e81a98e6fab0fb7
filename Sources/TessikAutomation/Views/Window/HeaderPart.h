#pragma once

#include <QWidget>

#include <cstdint>

namespace tessik {

/// How the header is laid out, from wide windows to narrow.
enum class HeaderFit : std::uint8_t {
    legends, ///< in one row, every key with its legend
    symbols, ///< in one row; keys with a symbol lose their legend
    rows,    ///< in two rows, the second of them low
};

/// A part of the header. It knows how wide it must be for nothing in it to be cut off, and calls `updateGeometry` when
/// that changes; it chooses its own height.
class HeaderPart : public QWidget {
public:
    using QWidget::QWidget;

    virtual int neededWidth(HeaderFit fit) const = 0;
    /// Takes the matching shape.
    virtual void setFit(HeaderFit fit) = 0;
};

} // namespace tessik
