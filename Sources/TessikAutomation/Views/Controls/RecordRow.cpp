#include "TessikAutomation/Views/Controls/RecordRow.h"

#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>

namespace tessik {
namespace {

constexpr int padding = 8;
constexpr int markSide = 16;

QString elided(const QString& text, const QFont& font, int width) {
    return QFontMetrics(font).elidedText(text, Qt::ElideRight, width);
}

} // namespace

RecordRow::RecordRow(DrawingContext& drawing, QWidget* parent)
    : QAbstractButton(parent),
      _drawing(drawing),
      _layout(new QHBoxLayout(this)),
      _trash(new SymbolButton(SymbolButton::Face::flat, QStringLiteral("trash"), {}, drawing, this)),
      _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setFixedHeight(rowHeight);
    setFocusPolicy(Qt::StrongFocus);
    _layout->setContentsMargins(0, 0, 4, 0);
    _layout->setSpacing(0);
    _layout->addStretch(1);
    _layout->addWidget(_trash);
    _trash->setObjectName(QStringLiteral("trash"));
    _trash->setToolTip(QStringLiteral("Delete"));
    connect(_trash, &QAbstractButton::clicked, this, &RecordRow::removed);
}

QSize RecordRow::sizeHint() const { return {280, rowHeight}; }

void RecordRow::setRecord(const QUuid& id, const QString& name, const QString& detail, const QString& aside) {
    if (id != _recordID) endRename(false);
    _recordID = id;
    _detail = detail;
    _aside = aside;
    setAccessibleName(name);
    _trash->setAccessibleName(QStringLiteral("Delete %1").arg(name));
    update();
}

void RecordRow::setMark(std::optional<bool> selected) {
    _mark = selected;
    setCheckable(selected.has_value());
    setChecked(selected.value_or(false));
    update();
}

SymbolButton* RecordRow::addButton(const QString& symbol, const QString& text, const QString& help) {
    auto* button = new SymbolButton(SymbolButton::Face::flat, symbol, text, _drawing, this);
    button->setToolTip(help);
    _layout->insertWidget(_layout->count() - 1, button);
    return button;
}

QRect RecordRow::textRect() const {
    int right = _trash->x();
    for (const SymbolButton* button : findChildren<SymbolButton*>(QString(), Qt::FindDirectChildrenOnly))
        right = std::min(right, button->x());
    const int left = padding + (_mark ? markSide + padding : 0);
    return QRect(left, 0, right - left - padding, height());
}

void RecordRow::rename() {
    if (_field) return;
    _field = new EntryField(accessibleName(), this);
    _field->setObjectName(QStringLiteral("rename"));
    _field->setAccessibleName(QStringLiteral("Name"));
    _field->setGeometry(textRect().adjusted(-4, 6, 4, -6));
    connect(_field, &EntryField::kept, this, [this] { endRename(true); });
    connect(_field, &EntryField::moved, this, [this] { endRename(true); });
    connect(_field, &EntryField::left, this, [this] { endRename(true); });
    connect(_field, &EntryField::dropped, this, [this] { endRename(false); });
    _field->show();
    _field->selectAll();
    _field->setFocus(Qt::OtherFocusReason);
}

void RecordRow::endRename(bool keep) {
    EntryField* field = std::exchange(_field, nullptr);
    if (!field) return;
    const QString name = field->text().trimmed();
    if (field->hasFocus()) setFocus(Qt::OtherFocusReason);
    field->hide();
    field->deleteLater();
    if (keep && !name.isEmpty() && name != accessibleName()) Q_EMIT renamed(name);
}

QList<QWidget*> RecordRow::parts() {
    QList<QWidget*> parts{this};
    for (int i = 0; i < _layout->count(); ++i)
        if (QWidget* part = _layout->itemAt(i)->widget()) parts.append(part);
    return parts;
}

void RecordRow::setInTabOrder(bool isIn) {
    setFocusPolicy(isIn ? Qt::StrongFocus : Qt::ClickFocus);
    for (QWidget* part : parts().mid(1))
        part->setFocusPolicy(isIn ? Qt::TabFocus : Qt::NoFocus);
}

void RecordRow::focusInEvent(QFocusEvent* event) {
    QAbstractButton::focusInEvent(event);
    Q_EMIT focused();
}

void RecordRow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: Q_EMIT chosen(); break;
    case Qt::Key_F2: rename(); break;
    case Qt::Key_Delete: Q_EMIT removed(); break;
    default: event->ignore();
    }
}

void RecordRow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Rename"), this, &RecordRow::rename)->setShortcut(Qt::Key_F2);
    Q_EMIT menuRequested(menu);
    menu->addAction(QStringLiteral("Delete"), this, &RecordRow::removed)->setShortcut(Qt::Key_Delete);
    menu->popup(event->globalPos());
}

void RecordRow::enterEvent(QEnterEvent*) { update(); }
void RecordRow::leaveEvent(QEvent*) { update(); }

void RecordRow::paintEvent(QPaintEvent*) {
    static const Symbol selected = symbolNamed(QStringLiteral("circle-selected"));
    static const Symbol circle = symbolNamed(QStringLiteral("circle"));
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    const QRectF whole = canvas.px(QRectF(rect()));
    const bool isSelected = _mark.value_or(false);
    const QColor accent = look.tints.focusRing;
    painter.setPen(Qt::NoPen);
    if (isSelected || underMouse()) {
        painter.setBrush(isSelected ? withAlpha(accent, underMouse() ? 0.24 : 0.17) : withAlpha(look.tints.text, 0.07));
        painter.drawRoundedRect(whole, 6 * canvas.scale, 6 * canvas.scale);
    }
    if (_mark) {
        const int side = canvas.px(markSide);
        const QRect mark(canvas.px(padding), (int(whole.height()) - side) / 2, side, side);
        (isSelected ? selected : circle)(painter, mark, isSelected ? accent : look.tints.secondaryText);
    }
    if (!_field) {
        const QRect text = canvas.px(QRectF(textRect()));
        const QFont nameFont = Type::font(13 * canvas.scale, QFont::Medium);
        const QFont detailFont = Type::font(11 * canvas.scale, QFont::Normal);
        const QRect top(text.x(), canvas.px(5), text.width(), canvas.px(16));
        const int asideWidth = _aside.isEmpty() ? 0 : QFontMetrics(detailFont).horizontalAdvance(_aside) + canvas.px(8);
        Type::draw(painter, top, Qt::AlignLeft, elided(accessibleName(), nameFont, top.width() - asideWidth), nameFont,
                   look.tints.text);
        Type::draw(painter, top, Qt::AlignRight, _aside, detailFont, look.tints.secondaryText);
        Type::draw(painter, QRect(text.x(), canvas.px(21), text.width(), canvas.px(14)), Qt::AlignLeft,
                   elided(_detail, detailFont, text.width()), detailFont, look.tints.secondaryText);
    }
    if (!hasFocus()) return;
    painter.setPen(QPen(accent, canvas.line(2)));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(whole.adjusted(1, 1, -1, -1), 6 * canvas.scale, 6 * canvas.scale);
}

} // namespace tessik
