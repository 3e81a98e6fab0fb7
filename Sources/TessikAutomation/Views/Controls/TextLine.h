#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QLabel>

namespace tessik {

/// A line of print at the right end of its place. If that is too narrow the text is elided, with the whole text in the
/// tooltip.
class TextLine final : public QLabel {
    Q_OBJECT

public:
    TextLine(const QFont& font, int height, QColor Tints::*color, DrawingContext& drawing, QWidget* parent);

    bool isElided() const { return width() < sizeHint().width(); }
    QSize sizeHint() const override; ///< for the whole text
    QSize minimumSizeHint() const override { return {0, height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QColor Tints::*const _color;
    DrawingContext& _drawing;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
