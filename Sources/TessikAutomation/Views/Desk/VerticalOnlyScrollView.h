#pragma once

#include "TessikAutomation/Views/Desk/OneAxisScrollView.h"

namespace tessik {

/// Moves its content up and down only.
class VerticalOnlyScrollView final : public OneAxisScrollView {
    Q_OBJECT

public:
    explicit VerticalOnlyScrollView(QWidget* parent = nullptr) : OneAxisScrollView(Qt::Vertical, parent) {}

    /// Whether the wheel alone moves the content; otherwise only together with Shift.
    void setWheelScrolls(bool on) { _wheelScrolls = on; }

    int top() const { return scrollBar()->value(); }
    /// Scrolls just far enough to bring [y, y + height) into view; its upper edge takes precedence.
    void reveal(int y, int height);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    bool _wheelScrolls = false;
};

} // namespace tessik
