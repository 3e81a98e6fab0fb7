#pragma once

#include <QWidget>

#include <array>

namespace tessik {

/// How the header is laid out, from wide windows to narrow ones.
enum class HeaderFit : std::uint8_t {
    legends, ///< in one row, every key with its legend
    symbols, ///< in one row; keys that a symbol stands for are without a legend
    rows,    ///< in two rows, of which the second is low
};
inline constexpr std::array allHeaderFits{HeaderFit::legends, HeaderFit::symbols, HeaderFit::rows};

/// A part of the header. It knows how wide it has to be for nothing in it to be cut, and calls `updateGeometry` when
/// that changes; its height is its own.
class HeaderPart : public QWidget {
public:
    using QWidget::QWidget;

    virtual int neededWidth(HeaderFit fit) const = 0;
    /// Takes the shape that goes with it.
    virtual void setFit(HeaderFit fit) = 0;
};

} // namespace tessik
