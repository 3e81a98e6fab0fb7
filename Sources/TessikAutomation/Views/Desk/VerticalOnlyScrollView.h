#pragma once

#include <QScrollBar>
#include <QWidget>

namespace tessik {

/// Shows a part of a higher content and moves it up and down only. Its scroll bar is placed by whoever owns the view.
class VerticalOnlyScrollView final : public QWidget {
    Q_OBJECT

public:
    explicit VerticalOnlyScrollView(QWidget* parent = nullptr);

    /// What the children of the scrolled content are put on.
    QWidget* content() const { return _content; }
    QScrollBar* scrollBar() const { return _scrollBar; }
    /// The content is as wide as the view and at least as high.
    void setContentHeight(int height, int step);
    /// The wheel moves the content; without, only together with Shift.
    void setWheelScrolls(bool on) { _wheelScrolls = on; }

    int top() const { return _scrollBar->value(); }
    /// Scrolls as little as brings [y, y + height) into view, beginning with its upper edge.
    void reveal(int y, int height);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void layOut();
    void moveContent();

    QWidget* _content;
    QScrollBar* _scrollBar;
    int _contentHeight = 0;
    bool _wheelScrolls = false;
    double _wheelRest = 0; ///< a part of a pixel that a fine wheel has not moved yet
};

} // namespace tessik
