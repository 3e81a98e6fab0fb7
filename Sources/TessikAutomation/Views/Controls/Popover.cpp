#include "TessikAutomation/Views/Controls/Popover.h"

#include "TessikAutomation/Views/Controls/AccessibleRole.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainterPath>
#include <QVBoxLayout>

namespace tessik {
namespace {

constexpr int shadowRoom = 20; ///< around the card
constexpr int padding = 12;
constexpr int cardWidth = Popover::contentWidth + 2 * padding;
constexpr int arrowHeight = 8;
constexpr qreal cornerRadius = 10;

const QString sheet = QStringLiteral(
    "QLabel { color: @text; }"
    "QLabel#secondary { color: @secondary; }"
    "QScrollArea, QWidget#list { background: transparent; border: none; }"
    "QFrame#card { background: @card; border: 1px solid @line; border-radius: 8px; }"
    "QLineEdit { color: @text; background: @field; border: 1px solid @fieldEdge; border-radius: 5px; padding: 3px 6px; "
    "  selection-background-color: @primary; selection-color: white; }"
    "QLineEdit:focus { border: 1px solid @accent; }"
    "QPushButton { color: @text; background: @field; border: 1px solid @fieldEdge; border-radius: 6px;"
    "  padding: 4px 16px; }"
    "QPushButton:hover { background: @hover; }"
    "QPushButton#save { color: white; background: @primary; }"
    "QPushButton#playTake, QPushButton#playBefore { padding: 3px 12px; }"
    "QPushButton#playTake { border-top-right-radius: 0; border-bottom-right-radius: 0; }"
    "QPushButton#playBefore { border-top-left-radius: 0; border-bottom-left-radius: 0; margin-left: -1px; }"
    "QPushButton:checked { background: @handle; }"
    "QPushButton:focus { border: 1px solid @accent; }"
    "QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }"
    "QScrollBar::handle:vertical { background: @handle; border-radius: 3px; margin: 1px; min-height: 24px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }");

} // namespace

Popover::Popover(const QString& title, SymbolButton& button, DrawingContext& drawing, QWidget* over)
    : QWidget(over),
      _button(button),
      _drawing(drawing),
      _layout(new QVBoxLayout(this)),
      _lookObserver(drawing.look.addNotifier([this] { applyLook(); })) {
    setAttribute(Qt::WA_NoMousePropagation);
    setAccessibleName(title);
    setAccessibleRole(*this, QAccessible::Grouping);
    hide();
    constexpr int edge = shadowRoom + padding;
    _layout->setContentsMargins(edge, edge + arrowHeight, edge, edge);
    _layout->setSpacing(8);
    auto* heading = new QLabel(title, this);
    heading->setObjectName(QStringLiteral("secondary"));
    heading->setFont(Type::font(11, QFont::DemiBold, 1));
    _layout->addWidget(heading);

    button.setCheckable(true);
    connect(&button, &QAbstractButton::clicked, this, [this](bool on) {
        if (!on) return close();
        open();
        _before = QApplication::focusWidget();
        takeKeyboard();
    });
    applyLook();
}

void Popover::applyLook() {
    AppStyle::applySheet(*this, sheet, *_drawing.look.value());
    update();
}

void Popover::addSection(QWidget* section) { _layout->addWidget(section); }

void Popover::refreshSoon() {
    if (std::exchange(_isRefreshDue, true)) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            _isRefreshDue = false;
            refresh();
        },
        Qt::QueuedConnection);
}

void Popover::leaveKeyboard(QWidget& part) {
    QWidget* focus = QApplication::focusWidget();
    if (focus && (focus == &part || part.isAncestorOf(focus))) focus->clearFocus();
}

void Popover::fit() {
    if (!isVisible()) return;
    _layout->activate();
    const QPoint tip = _button.mapTo(parentWidget(), QPoint(_button.width() / 2, _button.height()));
    const int width = cardWidth + 2 * shadowRoom;
    const int right = parentWidget()->width() - width;
    const int x = std::clamp(tip.x() - width / 2, -shadowRoom / 2, std::max(-shadowRoom / 2, right + shadowRoom / 2));
    setGeometry(Metrics::toGrid(x), Metrics::toGrid(tip.y() - shadowRoom + 2), width,
                Metrics::toGridUp(_layout->hasHeightForWidth() ? _layout->totalHeightForWidth(width)
                                                               : _layout->sizeHint().height()));
    setMask(rect().adjusted(0, shadowRoom - 2, 0, 0)); // the pointer can still reach the button above
    update();
}

void Popover::open() {
    if (isVisible()) return;
    refresh();
    show();
    raise();
    fit();
    _button.setChecked(true);
    qApp->installEventFilter(this);
}

void Popover::close() {
    if (!isVisible()) return;
    qApp->removeEventFilter(this);
    const QWidget* focus = QApplication::focusWidget();
    const bool hadKeyboard = focus && (focus == this || isAncestorOf(focus));
    leaveKeyboard(*this);
    hide();
    if (QWidget* before = _before; before && hadKeyboard && before->isVisible()) before->setFocus();
    _before.clear();
    _button.setChecked(false);
}

bool Popover::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) fit();
    return QWidget::event(event);
}

bool Popover::eventFilter(QObject* receiver, QEvent* event) {
    if (receiver == parentWidget() && event->type() == QEvent::Resize) fit();
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    if ((!isPress && event->type() != QEvent::KeyPress) || !receiver->isWidgetType() ||
        static_cast<QWidget*>(receiver)->window() != window())
        return false;
    if (isPress) {
        const QPoint at = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        const auto holds = [&at](const QWidget& widget) { return widget.rect().contains(widget.mapFromGlobal(at)); };
        if (!holds(*this) && !holds(_button)) close();
        return false;
    }
    QWidget* focus = QApplication::focusWidget();
    if (focus && focus->testAttribute(Qt::WA_InputMethodEnabled)) return false; // text is being edited
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Tab && !(focus && (focus == this || isAncestorOf(focus)))) {
        if (QWidget* first = neighbour(*this, true)) first->setFocus(Qt::TabFocusReason);
        return true;
    }
    if (key != Qt::Key_Escape) return false;
    close();
    return true;
}

/// The next part of this card that Tab reaches; null beyond its ends. A scrolling part moves through its own contents
/// itself, and is entered at its first.
QWidget* Popover::neighbour(QWidget& of, bool forward) const {
    const auto scroller = [this](QWidget* part) {
        while (part != this && !qobject_cast<QAbstractScrollArea*>(part))
            part = part->parentWidget();
        return part;
    };
    const QWidget* const left = scroller(&of == this ? &of : of.parentWidget());
    QWidget* part = &of;
    do {
        part = forward ? part->nextInFocusChain() : part->previousInFocusChain();
        const bool isReached = part->focusPolicy() & Qt::TabFocus && part->isVisible() && part->isEnabled();
        if (!isAncestorOf(part) || !isReached) continue;
        QWidget* const entered = scroller(part);
        if (entered == this) return part;
        if (entered != left) return forward ? part : neighbour(*entered, true);
    } while (isAncestorOf(part));
    return nullptr;
}

void Popover::keyPressEvent(QKeyEvent* event) {
    const bool forward = event->key() == Qt::Key_Down;
    QWidget* focus = QApplication::focusWidget();
    if (!focus || (!forward && event->key() != Qt::Key_Up)) return event->ignore();
    if (QWidget* part = neighbour(*focus, forward)) part->setFocus(Qt::TabFocusReason);
}

void Popover::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = *_drawing.look.value();
    const QRectF card = QRectF(rect()).adjusted(shadowRoom, shadowRoom + arrowHeight, -shadowRoom, -shadowRoom);
    Parts::dropShadow(painter, card.translated(0, 6), cornerRadius, 24, look.isDark() ? 0.6 : 0.3);
    const qreal x = std::clamp(qreal(_button.mapTo(parentWidget(), _button.rect().center()).x() - this->x()),
                               card.left() + cornerRadius + arrowHeight, card.right() - cornerRadius - arrowHeight);
    QPainterPath arrow(QPointF(x - arrowHeight, card.top() + 1));
    arrow.lineTo(x, card.top() - arrowHeight);
    arrow.lineTo(x + arrowHeight, card.top() + 1);
    QPainterPath outline;
    outline.addRoundedRect(card.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    outline = outline.united(arrow);
    const QColor ground = palette().color(QPalette::Window);
    painter.setBrush(look.isDark() ? blend(ground, Qt::white, 0.03) : ground);
    painter.setPen(QPen(look.isDark() ? blend(ground, Qt::white, 0.2) : blend(ground, Qt::black, 0.25), 1));
    painter.drawPath(outline);
}

} // namespace tessik
