#pragma once

#include <QScrollBar>
#include <QWidget>

namespace tessik {

/// Shows a part of a longer content and moves it along one axis only; across that axis the content is as large as the
/// view. The scroll bar is placed by whoever owns the view.
class OneAxisScrollView : public QWidget {
    Q_OBJECT

public:
    /// What the children of the scrolled content are put on.
    QWidget* content() const { return _content; }
    QScrollBar* scrollBar() const { return _scrollBar; }
    /// At least the view's own length is used; a line of the wheel moves it by `step`, a click beside the handle by a
    /// page.
    void setContentLength(int length, int step);

protected:
    OneAxisScrollView(Qt::Orientation axis, QWidget* parent);

    /// How far a turn of the wheel along an axis goes, in whole pixels; the rest is kept for the next.
    int wheelDistance(const QWheelEvent& event, Qt::Orientation turned);
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void moveContent();

    const Qt::Orientation _axis;
    QWidget* _content;
    QScrollBar* _scrollBar;
    int _contentLength = 0;
    double _wheelRest = 0; ///< a part of a pixel that a fine wheel has not moved yet
};

} // namespace tessik
