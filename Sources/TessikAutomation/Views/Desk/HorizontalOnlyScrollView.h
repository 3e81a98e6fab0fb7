#pragma once

#include <QScrollBar>
#include <QVariantAnimation>
#include <QWidget>

namespace tessik {

/// Shows a part of a wider content and moves it sideways only. Its scroll bar is placed by whoever owns the view.
class HorizontalOnlyScrollView final : public QWidget {
    Q_OBJECT

public:
    explicit HorizontalOnlyScrollView(QWidget* parent = nullptr);

    /// What the children of the scrolled content are put on.
    QWidget* content() const { return _content; }
    QScrollBar* scrollBar() const { return _scrollBar; }
    /// The content is as high as the view; a line of the wheel moves it by `step`, a click beside the handle by a page.
    void setContentWidth(int width, int step);

    int left() const { return _scrollBar->value(); }
    /// Where it stands, or is on its way to.
    int destination() const;
    int maxLeft() const { return _scrollBar->maximum(); }
    /// Held to what there is to see; animated, it takes 0.2 s.
    void scrollTo(int x, bool animated = false);
    /// Scrolls as little as brings [x, x + width) into view.
    void reveal(int x, int width, bool animated = false);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void layOut();
    void moveContent();

    QWidget* _content;
    QScrollBar* _scrollBar;
    QVariantAnimation _animation;
    int _contentWidth = 0;
    double _wheelRest = 0; ///< a part of a pixel that a fine wheel has not moved yet
};

} // namespace tessik
