#include "TessikAutomation/Views/Controls/ControlHost.h"

#include "TessikAutomation/Views/Controls/ControlEdit.h"
#include "TessikAutomation/Views/Controls/ControlHostAccessible.h"
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/ToolTips.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QToolTip>

#include <cmath>

namespace tessik {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds valueStays = 1200ms; // after a knob was last turned
constexpr Uptime gestureEnds = 1s;                       // without a key or a wheel turn
constexpr QSize entrySize(64, 22);

} // namespace

ControlHost::ControlHost(const PanelKind& kind, std::vector<ControlBinding> bindings, DrawingContext& drawing,
                         QWidget* parent, const UptimeClock& clock)
    : QWidget(parent),
      _kind(kind),
      _bindings(std::move(bindings)),
      _drawing(drawing),
      _clock(clock),
      _announcer(_bindings.size()) {
    ControlHostAccessible::install();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    _announceTimer.setSingleShot(true);
    connect(&_announceTimer, &QTimer::timeout, this, &ControlHost::announceDue);
    _movingTimer.setSingleShot(true);
    connect(&_movingTimer, &QTimer::timeout, this, [this] {
        if (const int control = std::exchange(_moving, -1); control >= 0) updateControl(control);
    });
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
    if (!isOperable(control)) return;
    const ControlBinding& binding = _bindings[std::size_t(control)];
    const double before = binding.read().number;
    if (!binding.history)
        binding.write(number);
    else if (number != before)
        binding.history->push(new ControlEdit(binding.undoText, binding.write, before, number, &binding, _gesture));
}

QSize ControlHost::panelSize() const {
    const qreal zoom = _drawing.zoom;
    return {int(std::ceil(width() / zoom - 1e-6)), int(std::ceil(height() / zoom - 1e-6))};
}

QRect ControlHost::toWidget(const QRect& inPanel) const {
    const qreal zoom = _drawing.zoom;
    if (zoom == 1) return inPanel;
    return QRectF(QPointF(inPanel.topLeft()) * zoom, QSizeF(inPanel.size()) * zoom).toAlignedRect();
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
    for (const std::size_t control : _announcer.takeDue(now))
        announce(int(control));
    using std::chrono::milliseconds;
    if (const std::optional<Uptime> due = _announcer.nextDue())
        _announceTimer.start(std::max(milliseconds(1), std::chrono::ceil<milliseconds>(*due - now)));
}

void ControlHost::updateControl(int control) {
    const ControlValue& shown = _shown[std::size_t(control)];
    const QRect rect = place(control);
    if (rect.isEmpty()) return;
    QRect dirty = view(control).movingRect(rect, shown);
    if (control == _focused && _focusVisible) dirty |= view(control).focusRect(rect, shown).adjusted(-2, -2, 2, 2);
    update(toWidget(dirty));
}

ControlState ControlHost::state(int control) const {
    return {.value = _shown[std::size_t(control)],
            .pressed = control == _pressed && _pressedInside,
            .hovered = control == _hovered,
            .moving = control == _moving || (control == _pressed && view(control).takesTyping())};
}

void ControlHost::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    const QRect panel(QPoint(), panelSize());
    const QPixmap& layer = _drawing.layer(&_kind, canvas.px(QRectF(panel)).size(), [&](QPainter& layerPainter) {
        Canvas face(layerPainter, canvas.scale, canvas.look, _drawing);
        _kind.paintFace(face, panel.size());
        for (int i = 0; i < controlCount(); ++i)
            if (isShown(i)) view(i).paintStatic(face, place(i));
    });
    const qreal ratio = devicePixelRatioF();
    for (const QRect& dirty : event->region()) {
        const QRectF onDevice(QPointF(dirty.topLeft()) * ratio, QSizeF(dirty.size()) * ratio);
        const QRect part = onDevice.adjusted(-0.5, -0.5, 0.5, 0.5).toAlignedRect().intersected(layer.rect());
        painter.drawPixmap(part.topLeft(), layer, part);
    }
    for (int i = 0; i < controlCount(); ++i) {
        const QRect rect = place(i);
        if (!rect.isEmpty() && event->region().intersects(toWidget(view(i).movingRect(rect, _shown[std::size_t(i)]))))
            view(i).paintMoving(canvas, rect, state(i));
    }
    if (_focusVisible && focusedControl() >= 0) paintFocus(canvas);
    for (const int control : {_moving, _pressed})
        if (control >= 0 && state(control).moving) view(control).paintOverlay(canvas, place(control), state(control));
}

void ControlHost::paintFocus(Canvas& canvas) const {
    const QRect ring = canvas.px(QRectF(view(_focused).focusRect(place(_focused), _shown[std::size_t(_focused)])));
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
    beginGesture(control);
    if (event->modifiers() & Qt::ControlModifier && view(control).defaultNumber()) {
        reset(control);
        return;
    }
    _pressed = control;
    _pressedInside = true;
    _drag = {toPanel(event->position()), toPanel(event->position()), value(control).number};
    _dragging = false;
    updateControl(control);
}

void ControlHost::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    // A release that went elsewhere, to a dialog for instance, ends the drag too.
    if (_pressed >= 0 && !(event->buttons() & Qt::LeftButton)) updateControl(std::exchange(_pressed, -1));
    if (_pressed < 0) {
        const int control = controlAt(at.toPoint());
        setHovered(control >= 0 && isOperable(control) ? control : -1);
        return;
    }
    if (view(_pressed).operation() == ControlView::Operation::drag) {
        _drag.to = toPanel(at);
        if (!_dragging && (_drag.to - _drag.from).manhattanLength() < Metrics::dragThreshold) return;
        _dragging = true;
        setNumber(_pressed, view(_pressed).dragged(place(_pressed), _drag));
    } else if (const QRect rect = controlRect(_pressed); rect.contains(at.toPoint()) != _pressedInside) {
        _pressedInside = !_pressedInside;
        updateControl(_pressed);
    }
}

void ControlHost::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || _pressed < 0) return;
    const int control = std::exchange(_pressed, -1);
    updateControl(control);
    if (_dragging) showMoving(control);
    if (_pressedInside && view(control).operation() == ControlView::Operation::click)
        setNumber(control, view(control).clicked(value(control).number));
}

void ControlHost::mouseDoubleClickEvent(QMouseEvent* event) {
    const int control = controlAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || control < 0 || !isOperable(control) || !view(control).defaultNumber()) {
        mousePressEvent(event);
        return;
    }
    beginGesture(control);
    reset(control);
}

void ControlHost::reset(int control) {
    setNumber(control, *view(control).defaultNumber());
    showMoving(control);
}

void ControlHost::wheelEvent(QWheelEvent* event) {
    const int control = controlAt(event->position().toPoint());
    const bool pixels = !event->pixelDelta().isNull();
    const double delta = pixels ? event->pixelDelta().y() : event->angleDelta().y() / 12.0;
    std::optional<double> number;
    if (control >= 0 && isOperable(control) && delta != 0 && !(event->modifiers() & Qt::ShiftModifier))
        number = view(control).wheeled(delta, value(control).number);
    if (!number) {
        event->ignore();
        return;
    }
    continueGesture(control);
    setNumber(control, *number);
    showMoving(control);
}

// ---- gestures

void ControlHost::beginGesture(int control) {
    ++_gesture;
    _gestureControl = control;
    _gestureAt = _clock.now();
}

void ControlHost::continueGesture(int control) {
    if (control != _gestureControl || _clock.now() - _gestureAt > gestureEnds) beginGesture(control);
    _gestureAt = _clock.now();
}

void ControlHost::showMoving(int control) {
    if (!view(control).takesTyping()) return;
    const int before = std::exchange(_moving, control);
    for (const int changed : {before, control})
        if (changed >= 0) updateControl(changed);
    _movingTimer.start(valueStays);
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
        ToolTips::show(globalPosition, QStringLiteral("%1, %2").arg(name(control), valueText(control)), this,
                       controlRect(control));
}

// ---- keyboard

void ControlHost::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    std::optional<double> number;
    const bool fine = event->modifiers() & Qt::ShiftModifier;
    if (plain && _focused >= 0) number = view(_focused).keyed(event->key(), fine, value(_focused).number);
    if (const QString text = event->text(); plain && !number && _focused >= 0 && view(_focused).takesTyping() &&
                                            !text.isEmpty() && text[0].isPrint() && !text[0].isSpace()) {
        editValue(_focused, text);
        return;
    }
    if (!number) {
        event->ignore();
        return;
    }
    _focusVisible = true;
    continueGesture(_focused);
    setNumber(_focused, *number);
    showMoving(_focused);
    updateControl(_focused);
}

void ControlHost::editValue(int control, const QString& text) {
    if (!isOperable(control) || !view(control).takesTyping()) return;
    auto* field = new EntryField(text, this);
    field->setAlignment(Qt::AlignCenter);
    field->setAccessibleName(name(control));
    QRect area(QPoint(), entrySize);
    area.moveCenter(controlRect(control).center());
    area.moveLeft(std::clamp(area.left(), 0, std::max(0, width() - area.width())));
    field->setGeometry(area);
    const auto keep = [this, field, control] {
        const std::optional<double> number = view(control).typed(field->text());
        if (!number) return false;
        beginGesture(control);
        setNumber(control, *number);
        showMoving(control);
        return true;
    };
    const auto close = [this, field] {
        field->disconnect(this);
        field->deleteLater();
        field->hide();
        setFocus(Qt::OtherFocusReason);
    };
    connect(field, &EntryField::dropped, this, close);
    connect(field, &EntryField::kept, this, [field, keep, close] {
        if (keep())
            close();
        else
            field->selectAll();
    });
    connect(field, &EntryField::moved, this, [this, keep, close](bool forward) {
        keep();
        close();
        focusNextPrevChild(forward);
    });
    connect(field, &EntryField::left, this, [this, field, keep] {
        keep();
        field->disconnect(this);
        field->deleteLater();
        field->hide();
    });
    field->show();
    field->setFocus(Qt::OtherFocusReason);
}

int ControlHost::nextOperable(int from, int step) const {
    for (int i = from + step; i >= 0 && i < controlCount(); i += step)
        if (isOperable(i) && isShown(i)) return i;
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
