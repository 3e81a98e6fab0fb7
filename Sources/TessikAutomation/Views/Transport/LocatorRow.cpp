#include "TessikAutomation/Views/Transport/LocatorRow.h"

#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Transport/TimecodeText.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>

namespace tessik {
namespace {

constexpr int rowHeight = 28;
constexpr int labelWidth = 40;
constexpr int fieldWidth = 96;
constexpr int keyWidth = 28;
constexpr int digitPixels = 13;

} // namespace

LocatorField::LocatorField(DrawingContext& drawing, QWidget* parent)
    : PanelButton(TimecodeText::of(std::nullopt), nullptr, drawing, parent) {}

void LocatorField::setPosition(const std::optional<TimecodePosition>& position) { setText(TimecodeText::of(position)); }

void LocatorField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    const QRect hollow = canvas.px(QRectF(rect()).adjusted(0, 3, 0, -3));
    const QColor ground = isDown() || isHot() ? blend(look.tints.displayBackground, Qt::white, isDown() ? 0.16 : 0.09)
                                              : look.tints.displayBackground;
    Parts::recess(painter, hollow.adjusted(0, 0, 0, -canvas.line()), canvas.scale, ground, 3 * canvas.scale, look);
    TimecodeText::draw(canvas, hollow, text(), digitPixels,
                       isEnabled() ? look.tints.display
                                   : blend(look.tints.displayDim, look.tints.displayBackground, 0.2));
    drawFocus(canvas, hollow);
}

LocatorRow::LocatorRow(const QString& label, const QString& captureKeys, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _label(label),
      _drawing(drawing),
      _field(new LocatorField(drawing, this)),
      _capture(new PanelButton({}, symbolNamed(QStringLiteral("capture")), drawing, this)),
      _clear(new PanelButton({}, symbolNamed(QStringLiteral("clear")), drawing, this)) {
    setFixedSize(labelWidth + fieldWidth + 2 * keyWidth + 4, rowHeight);
    _field->setGeometry(labelWidth, 0, fieldWidth, rowHeight);
    _capture->setGeometry(labelWidth + fieldWidth + 4, 0, keyWidth, rowHeight);
    _clear->setGeometry(labelWidth + fieldWidth + 4 + keyWidth, 0, keyWidth, rowHeight);

    const QString name = label.toLower();
    _capture->setAccessibleName(QStringLiteral("Set %1").arg(name));
    _capture->setToolTip(QStringLiteral("Set %1 to the current timecode (note: most machines stop sending MTC while "
                                        "shuttling, so this captures the last position actually reported)  (%2)")
                             .arg(name, captureKeys));
    _clear->setAccessibleName(QStringLiteral("Clear %1").arg(name));
    _clear->setToolTip(QStringLiteral("Clear %1").arg(name));
}

void LocatorRow::setState(const std::optional<TimecodePosition>& locator, bool hasTimecode, bool hasTransport) {
    const QString name = _label.toLower();
    _field->setPosition(locator);
    _field->setAccessibleName(QStringLiteral("%1 locator %2").arg(_label, _field->text()));
    _field->setEnabled(locator && hasTransport);
    setFocusPolicy(_field->isEnabled() ? Qt::NoFocus : Qt::TabFocus); // the keyboard focus gets here either way
    setAccessibleName(_field->accessibleName());
    _field->setToolTip(!locator       ? QStringLiteral("Set %1 first").arg(name)
                       : hasTransport ? QStringLiteral("Locate transport to %1").arg(name)
                                      : QStringLiteral("Select a transport device first"));
    _capture->setEnabled(hasTimecode);
    _clear->setEnabled(locator.has_value());
}

void LocatorRow::edit() {
    if (_entry) return _entry->setFocus(Qt::OtherFocusReason);
    const bool isSet = _clear->isEnabled();
    _entry = new EntryField(isSet ? _field->text() : QString(), this);
    _entry->setObjectName(QStringLiteral("position"));
    _entry->setAccessibleName(QStringLiteral("%1 locator").arg(_label));
    _entry->setPlaceholderText(QStringLiteral("hh:mm:ss:ff"));
    _entry->setAlignment(Qt::AlignCenter);
    const Tints& tints = _drawing.look.value()->tints;
    QPalette colors = _entry->palette();
    colors.setColor(QPalette::Base, tints.displayBackground);
    colors.setColor(QPalette::Text, tints.display);
    colors.setColor(QPalette::PlaceholderText, tints.displayDim);
    _entry->setPalette(colors);
    _entry->setGeometry(_field->geometry().adjusted(-2, 1, 2, -1));
    const auto keepOrStay = [this] {
        if (keep()) closeEntry();
    };
    connect(_entry, &EntryField::dropped, this, &LocatorRow::closeEntry);
    connect(_entry, &EntryField::kept, this, keepOrStay);
    connect(_entry, &EntryField::left, this, keepOrStay);
    connect(_entry, &EntryField::moved, this, [this](bool forward) {
        if (!keep()) return;
        closeEntry();
        focusNextPrevChild(forward);
    });
    connect(_entry, &QLineEdit::textEdited, this, [this] { showProblem({}); });
    _entry->show();
    _entry->selectAll();
    _entry->setFocus(Qt::OtherFocusReason);
}

/// Whether the entry may close: with a valid position, or unchanged.
bool LocatorRow::keep() {
    const QString text = _entry->text();
    if (text.trimmed().isEmpty() || text == _field->text()) return true;
    const TimecodeText::Typed meant = TimecodeText::parse(text, rate());
    showProblem(meant.problem);
    if (meant.position) Q_EMIT typed(*meant.position);
    return meant.position.has_value();
}

void LocatorRow::closeEntry() {
    showProblem({});
    EntryField* entry = std::exchange(_entry, nullptr);
    entry->disconnect(this);
    const bool hadFocus = entry->hasFocus();
    entry->hide();
    entry->deleteLater();
    if (!hadFocus) return;
    if (_field->isEnabled())
        _field->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
}

/// Below the panel, so that the other locator stays visible, until the text is changed.
void LocatorRow::showProblem(const QString& problem) {
    delete _problem;
    if (_entry) _entry->setAccessibleDescription(problem);
    if (problem.isEmpty()) return;
    _problem = new QLabel(problem, window());
    _problem->setObjectName(QStringLiteral("positionProblem"));
    _problem->setAutoFillBackground(true);
    _problem->setFrameShape(QFrame::Box);
    _problem->setMargin(5);
    QPalette colors = _problem->palette();
    const Tints& tints = _drawing.look.value()->tints;
    colors.setColor(QPalette::Window, tints.displayBackground);
    colors.setColor(QPalette::WindowText, tints.warning);
    _problem->setPalette(colors);
    _problem->adjustSize();
    const QPoint below(x() + _field->x(), parentWidget()->height() + 2);
    _problem->move(parentWidget()->mapTo(window(), below));
    _problem->show();
    _problem->raise();
}

void LocatorRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F2)
        edit();
    else
        event->ignore();
}

void LocatorRow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Type Position"), this, &LocatorRow::edit)->setShortcut(Qt::Key_F2);
    menu->popup(event->globalPos());
}

void LocatorRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    Type::draw(painter, canvas.px(QRectF(0, 0, labelWidth - 8, rowHeight)), Qt::AlignRight, _label,
               Type::font(9 * canvas.scale, QFont::DemiBold, 0.6 * canvas.scale), canvas.look.tints.legend);
    if (!hasFocus()) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(canvas.look.tints.focusRing, canvas.line(2)));
    painter.drawRoundedRect(canvas.px(QRectF(rect()).adjusted(1, 1, -1, -1)), 4 * canvas.scale, 4 * canvas.scale);
}

} // namespace tessik
