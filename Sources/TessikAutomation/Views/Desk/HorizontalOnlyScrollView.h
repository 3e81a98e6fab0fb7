#pragma once

#include "TessikAutomation/Views/Desk/OneAxisScrollView.h"

#include <QVariantAnimation>

namespace tessik {

/// Moves its content sideways only, by either axis of the wheel.
class HorizontalOnlyScrollView final : public OneAxisScrollView {
    Q_OBJECT

public:
    explicit HorizontalOnlyScrollView(QWidget* parent = nullptr);

    int left() const { return scrollBar()->value(); }
    /// Where it stands, or is on its way to.
    int destination() const;
    int maxLeft() const { return scrollBar()->maximum(); }
    /// Held to what there is to see; animated, it takes 0.2 s.
    void scrollTo(int x, bool animated = false);
    /// Scrolls as little as brings [x, x + width) into view.
    void reveal(int x, int width, bool animated = false);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    QVariantAnimation _animation;
};

} // namespace tessik
