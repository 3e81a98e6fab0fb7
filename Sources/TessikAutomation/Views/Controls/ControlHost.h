#pragma once

#include "TessikAutomation/Views/Controls/ControlTable.h"
#include "TessikAutomation/Views/Controls/ValueAnnouncer.h"

#include <QTimer>
#include <QWidget>

#include <optional>

namespace tessik {

/// One opaque widget that shows all controls of a panel and does for them what widgets do: painting only what changed,
/// pointer and keys, keyboard focus, tooltips, and an accessible child each.
///
/// Left, Right, Space, Return and the wheel are left to the surrounding widgets.
class ControlHost : public QWidget {
    Q_OBJECT

public:
    /// `kind` and `drawing` must outlive the host; `bindings` are in the order of the kind's controls.
    ControlHost(const PanelKind& kind, std::vector<ControlBinding> bindings, DrawingContext& drawing,
                QWidget* parent = nullptr, const UptimeClock& clock = UptimeClock::system());
    ~ControlHost() override;

    int controlCount() const { return int(_bindings.size()); }
    int controlIndex(const QString& id) const; ///< -1 if there is none
    const ControlView& view(int control) const { return *_kind.controls[std::size_t(control)].view; }
    const QString& name(int control) const { return _bindings[std::size_t(control)].name; }
    ControlValue value(int control) const { return _bindings[std::size_t(control)].read(); }
    QString valueText(int control) const { return view(control).valueText(value(control)); }
    /// In pixels of the widget.
    QRect controlRect(int control) const { return toWidget(place(control)); }
    /// Whether the panel has room for it.
    bool isShown(int control) const { return !place(control).isEmpty(); }
    bool isOperable(int control) const;
    /// Operates the control as a hand would.
    void setNumber(int control, double number);
    /// Opens a field for typing the control's value, if it can be typed, initially holding `text`.
    void editValue(int control, const QString& text);

    int controlAt(QPoint position) const; ///< -1 if there is none
    int focusedControl() const { return hasFocus() ? _focused : -1; }
    void focusControl(int control, Qt::FocusReason reason);

Q_SIGNALS:
    /// A control received the keyboard focus and should be brought into view.
    void controlFocused();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    // The geometry of views is in panel units, which the zoom makes larger or smaller than pixels.
    QSize panelSize() const;
    QRect place(int control) const { return _kind.controls[std::size_t(control)].place(panelSize()); }
    QRect toWidget(const QRect& inPanel) const;
    QPointF toPanel(QPointF inWidget) const { return inWidget / _drawing.zoom.value(); }

    void noteChange(int control);
    void announce(int control);
    void announceDue();
    void updateControl(int control);
    void setHovered(int control);
    void showToolTip(QPoint position, QPoint globalPosition);
    int nextOperable(int from, int step) const;
    ControlState state(int control) const;
    void beginGesture(int control);
    void continueGesture(int control);
    void showMoving(int control);
    void reset(int control);
    void paintFocus(Canvas& canvas) const;

    const PanelKind& _kind;
    std::vector<ControlBinding> _bindings;
    DrawingContext& _drawing;
    const UptimeClock& _clock;
    std::vector<QPropertyNotifier> _observers;
    std::vector<ControlValue> _shown; ///< as last drawn or asked to be drawn

    int _focused = -1;
    bool _focusVisible = false; ///< the focus came by keyboard
    int _hovered = -1;
    int _pressed = -1;
    bool _pressedInside = false;
    bool _dragging = false;
    ControlView::Drag _drag; ///< in panel units
    int _moving = -1;        ///< shows its value
    QTimer _movingTimer;
    std::uint64_t _gesture = 0; ///< changes with the same one make one undo step
    int _gestureControl = -1;
    Uptime _gestureAt{};

    ValueAnnouncer _announcer;
    QTimer _announceTimer;
};

} // namespace tessik
