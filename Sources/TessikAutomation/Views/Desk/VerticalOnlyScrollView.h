#pragma once

#include "TessikAutomation/Views/Desk/OneAxisScrollView.h"

namespace tessik {

/// Moves its content up and down only.
class VerticalOnlyScrollView final : public OneAxisScrollView {
    Q_OBJECT

public:
    explicit VerticalOnlyScrollView(QWidget* parent = nullptr) : OneAxisScrollView(Qt::Vertical, parent) {}

    /// The wheel moves the content; without, only together with Shift.
    void setWheelScrolls(bool on) { _wheelScrolls = on; }

    int top() const { return scrollBar()->value(); }
    /// Scrolls as little as brings [y, y + height) into view, beginning with its upper edge.
    void reveal(int y, int height);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    bool _wheelScrolls = false;
};

} // namespace tessik
