#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikAutomation/Views/Drawing/SVGSymbol.h"

#include <QAbstractButton>

namespace tessik {

/// A key of the header, in the material of the desk: a symbol above its legend, or alone. Space and Return belong to
/// the window, so Up presses it when it has the keyboard focus.
class PanelButton : public QAbstractButton {
    Q_OBJECT

public:
    PanelButton(const QString& legend, Symbol symbol, DrawingContext& drawing, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    /// Width of a header key, in pixels.
    static constexpr int widthOf(bool withLegend) { return withLegend ? 60 : 32; }
    /// Without its legend, only the symbol shows.
    void setLegendVisible(bool visible);
    /// Colour of the symbol; the legend's unless set.
    void setTint(const QColor& tint) { _tint = tint; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

    bool isHot() const { return isEnabled() && underMouse(); }
    bool isLegendVisible() const { return _legendVisible && !text().isEmpty(); }
    void drawFocus(Canvas& canvas, const QRect& rect) const;
    DrawingContext& _drawing;

private:
    Symbol _symbol;
    QColor _tint;
    bool _legendVisible = true;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
