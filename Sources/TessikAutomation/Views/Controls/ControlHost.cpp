#include "TessikAutomation/Views/Controls/ControlHost.h"

#include "TessikAutomation/Views/Controls/ControlHostAccessible.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QToolTip>

namespace tessik {

ControlHost::ControlHost(const PanelKind& kind, std::vector<ControlBinding> bindings, DrawingContext& drawing,
                         QWidget* parent, const UptimeClock& clock)
    : QWidget(parent), _kind(kind), _bindings(std::move(bindings)), _drawing(drawing), _clock(clock),
      _announcer(_bindings.size()) {
    ControlHostAccessible::install();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    _announceTimer.setSingleShot(true);
    connect(&_announceTimer, &QTimer::timeout, this, &ControlHost::announceDue);
    _observers.push_back(_drawing.look.addNotifier([this] { update(); }));
    for (int i = 0; i < controlCount(); ++i) {
        const ControlBinding& binding = _bindings[std::size_t(i)];
        _shown.push_back(binding.read());
        if (isOperable(i)) setFocusPolicy(Qt::StrongFocus);
        if (!binding.watch) continue;
        for (QPropertyNotifier& observer : binding.watch([this, i] { noteChange(i); }))
            _observers.push_back(std::move(observer));
    }
}

ControlHost::~ControlHost() = default;

int ControlHost::controlIndex(const QString& id) const {
    for (int i = 0; i < controlCount(); ++i)
        if (_kind.controls[std::size_t(i)].id == id) return i;
    return -1;
}

bool ControlHost::isOperable(int control) const {
    return view(control).operation() != ControlView::Operation::none && _bindings[std::size_t(control)].write;
}

void ControlHost::setNumber(int control, double number) {
    if (isOperable(control)) _bindings[std::size_t(control)].write(number);
}

int ControlHost::controlAt(QPoint position) const {
    for (int i = 0; i < controlCount(); ++i)
        if (controlRect(i).contains(position)) return i;
    return -1;
}

// ---- change and painting

void ControlHost::noteChange(int control) {
    ControlValue now = value(control);
    ControlValue& shown = _shown[std::size_t(control)];
    if (now == shown) return;
    updateControl(control);
    shown = std::move(now);
    updateControl(control);
    if (!QAccessible::isActive()) return;
    if (_announcer.note(std::size_t(control), _clock.now()))
        announce(control);
    else if (!_announceTimer.isActive())
        _announceTimer.start(std::chrono::duration_cast<std::chrono::milliseconds>(ValueAnnouncer::interval));
}

void ControlHost::announce(int control) { ControlHostAccessible::announceValue(*this, control); }

void ControlHost::announceDue() {
    const Uptime now = _clock.now();
    for (const std::size_t control : _announcer.takeDue(now)) announce(int(control));
    using std::chrono::milliseconds;
    if (const std::optional<Uptime> due = _announcer.nextDue())
        _announceTimer.start(std::max(milliseconds(1), std::chrono::ceil<milliseconds>(*due - now)));
}

void ControlHost::updateControl(int control) {
    const ControlValue& shown = _shown[std::size_t(control)];
    const QRect rect = controlRect(control);
    QRect dirty = view(control).movingRect(rect, shown);
    if (control == _focused && _focusVisible) dirty |= view(control).focusRect(rect, shown).adjusted(-2, -2, 2, 2);
    update(dirty);
}

ControlState ControlHost::state(int control) const {
    return {.value = _shown[std::size_t(control)],
            .pressed = control == _pressed && _pressedInside,
            .hovered = control == _hovered};
}

void ControlHost::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    const QPixmap& layer = _drawing.layer(&_kind, canvas.px(QRectF(rect())).size(), [&](QPainter& layerPainter) {
        Canvas face(layerPainter, canvas.scale, canvas.look, _drawing);
        _kind.paintFace(face, size());
        for (int i = 0; i < controlCount(); ++i) view(i).paintStatic(face, controlRect(i));
    });
    for (const QRect& dirty : event->region()) {
        const QRect part = canvas.px(QRectF(dirty).adjusted(-0.5, -0.5, 0.5, 0.5)).intersected(layer.rect());
        painter.drawPixmap(part.topLeft(), layer, part);
    }
    for (int i = 0; i < controlCount(); ++i) {
        const QRect rect = controlRect(i);
        if (event->region().intersects(view(i).movingRect(rect, _shown[std::size_t(i)])))
            view(i).paintMoving(canvas, rect, state(i));
    }
    if (_focusVisible && focusedControl() >= 0) paintFocus(canvas);
}

void ControlHost::paintFocus(Canvas& canvas) const {
    const QRect ring = canvas.px(QRectF(view(_focused).focusRect(controlRect(_focused), _shown[std::size_t(_focused)])));
    const qreal width = canvas.line(1.5);
    QPainter& painter = canvas.painter;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(withAlpha(canvas.look.tints.focusRing, 0.35), width + 2 * canvas.line()));
    painter.drawRoundedRect(QRectF(ring), 4 * canvas.scale, 4 * canvas.scale);
    painter.setPen(QPen(canvas.look.tints.focusRing, width));
    painter.drawRoundedRect(QRectF(ring), 4 * canvas.scale, 4 * canvas.scale);
}

// ---- pointer

void ControlHost::mousePressEvent(QMouseEvent* event) {
    const int control = controlAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || control < 0 || !isOperable(control)) {
        QWidget::mousePressEvent(event);
        return;
    }
    focusControl(control, Qt::MouseFocusReason);
    _pressed = control;
    _pressedInside = true;
    _pressedAt = event->position();
    _dragging = false;
    updateControl(control);
}

void ControlHost::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    // A release that went elsewhere, to a dialog say, ends the drag all the same.
    if (_pressed >= 0 && !(event->buttons() & Qt::LeftButton)) updateControl(std::exchange(_pressed, -1));
    if (_pressed < 0) {
        const int control = controlAt(at.toPoint());
        setHovered(control >= 0 && isOperable(control) ? control : -1);
        return;
    }
    const QRect rect = controlRect(_pressed);
    if (view(_pressed).operation() == ControlView::Operation::drag) {
        if (!_dragging && (at - _pressedAt).manhattanLength() < Metrics::dragThreshold) return;
        _dragging = true;
        setNumber(_pressed, view(_pressed).dragged(rect, at, value(_pressed).number));
    } else if (rect.contains(at.toPoint()) != _pressedInside) {
        _pressedInside = !_pressedInside;
        updateControl(_pressed);
    }
}

void ControlHost::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || _pressed < 0) return;
    const int control = std::exchange(_pressed, -1);
    updateControl(control);
    if (_pressedInside && view(control).operation() == ControlView::Operation::click)
        setNumber(control, view(control).clicked(value(control).number));
}

void ControlHost::leaveEvent(QEvent*) { setHovered(-1); }

void ControlHost::setHovered(int control) {
    if (control == _hovered) return;
    const int before = std::exchange(_hovered, control);
    for (const int changed : {before, control})
        if (changed >= 0) updateControl(changed);
}

bool ControlHost::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        showToolTip(help->pos(), help->globalPos());
        return true;
    }
    return QWidget::event(event);
}

void ControlHost::showToolTip(QPoint position, QPoint globalPosition) {
    const int control = controlAt(position);
    if (control < 0)
        QToolTip::hideText();
    else
        QToolTip::showText(globalPosition, QStringLiteral("%1, %2").arg(name(control), valueText(control)), this,
                           controlRect(control));
}

// ---- keyboard

void ControlHost::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    std::optional<double> number;
    if (plain && _focused >= 0) number = view(_focused).keyed(event->key(), value(_focused).number);
    if (!number) {
        event->ignore();
        return;
    }
    _focusVisible = true;
    setNumber(_focused, *number);
    updateControl(_focused);
}

int ControlHost::nextOperable(int from, int step) const {
    for (int i = from + step; i >= 0 && i < controlCount(); i += step)
        if (isOperable(i)) return i;
    return -1;
}

void ControlHost::focusControl(int control, Qt::FocusReason reason) {
    if (_focused >= 0) updateControl(_focused);
    _focused = control;
    _focusVisible = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    if (!hasFocus()) setFocus(Qt::OtherFocusReason);
    updateControl(control);
    ControlHostAccessible::announceFocus(*this, control);
    if (_focusVisible) Q_EMIT controlFocused();
}

void ControlHost::focusInEvent(QFocusEvent* event) {
    if (event->reason() == Qt::TabFocusReason)
        focusControl(nextOperable(-1, 1), event->reason());
    else if (event->reason() == Qt::BacktabFocusReason)
        focusControl(nextOperable(controlCount(), -1), event->reason());
    else if (_focused >= 0)
        updateControl(_focused);
}

void ControlHost::focusOutEvent(QFocusEvent*) {
    if (_focused >= 0) updateControl(_focused);
}

bool ControlHost::focusNextPrevChild(bool next) {
    if (const int control = nextOperable(_focused, next ? 1 : -1); hasFocus() && _focused >= 0 && control >= 0) {
        focusControl(control, next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    return QWidget::focusNextPrevChild(next);
}

} // namespace tessik
