#pragma once

#include "TessikAutomation/Views/Desk/OneAxisScrollView.h"

#include <QVariantAnimation>

namespace tessik {

/// Moves its content sideways only, by either wheel axis.
class HorizontalOnlyScrollView final : public OneAxisScrollView {
    Q_OBJECT

public:
    explicit HorizontalOnlyScrollView(QWidget* parent = nullptr);

    int left() const { return scrollBar()->value(); }
    /// Where it is, or is heading.
    int destination() const;
    int maxLeft() const { return scrollBar()->maximum(); }
    /// Clamped to the content; animated, it takes 0.2 s.
    void scrollTo(int x, bool animated = false);
    /// Scrolls just far enough to bring [x, x + width) into view.
    void reveal(int x, int width, bool animated = false);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    QVariantAnimation _animation;
};

} // namespace tessik
