#pragma once

#include <QScrollBar>
#include <QWidget>

namespace tessik {

/// Shows part of a longer content and moves it along one axis only; across that axis the content is as large as the
/// view. The scroll bar is placed by the view's owner.
class OneAxisScrollView : public QWidget {
    Q_OBJECT

public:
    /// The parent for the scrolled content's children.
    QWidget* content() const { return _content; }
    QScrollBar* scrollBar() const { return _scrollBar; }
    /// At least the view's own length; a wheel line moves it by `step`, a click beside the handle by a page.
    void setContentLength(int length, int step);

protected:
    OneAxisScrollView(Qt::Orientation axis, QWidget* parent);

    /// How far a turn of the wheel along an axis goes, in whole pixels; the remainder is kept for the next.
    int wheelDistance(const QWheelEvent& event, Qt::Orientation turned);
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void moveContent();

    const Qt::Orientation _axis;
    QWidget* _content;
    QScrollBar* _scrollBar;
    int _contentLength = 0;
    double _wheelRest = 0; ///< fractions of a pixel that a fine wheel has not moved yet
};

} // namespace tessik
