#include "TessikAutomation/Views/Transport/LocatorRow.h"

#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Transport/TimecodeText.h"
#include "TessikAutomation/Views/Transport/TransportIcon.h"

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

LocatorRow::LocatorRow(const QString& label, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _label(label),
      _drawing(drawing),
      _field(new LocatorField(drawing, this)),
      _capture(new PanelButton({}, transportIcon(QStringLiteral("capture")), drawing, this)),
      _clear(new PanelButton({}, transportIcon(QStringLiteral("clear")), drawing, this)) {
    setFixedSize(labelWidth + fieldWidth + 2 * keyWidth + 4, rowHeight);
    _field->setGeometry(labelWidth, 0, fieldWidth, rowHeight);
    _capture->setGeometry(labelWidth + fieldWidth + 4, 0, keyWidth, rowHeight);
    _clear->setGeometry(labelWidth + fieldWidth + 4 + keyWidth, 0, keyWidth, rowHeight);

    const QString name = label.toLower();
    _capture->setAccessibleName(QStringLiteral("Set %1").arg(name));
    _capture->setToolTip(QStringLiteral("Set %1 to the current timecode (note: most machines stop sending MTC while "
                                        "shuttling, so this captures the last position actually reported)")
                             .arg(name));
    _clear->setAccessibleName(QStringLiteral("Clear %1").arg(name));
    _clear->setToolTip(QStringLiteral("Clear %1").arg(name));
}

void LocatorRow::setState(const std::optional<TimecodePosition>& locator, bool hasTimecode, bool hasTransport) {
    const QString name = _label.toLower();
    _field->setPosition(locator);
    _field->setAccessibleName(QStringLiteral("%1 locator %2").arg(_label, _field->text()));
    _field->setEnabled(locator && hasTransport);
    _field->setToolTip(!locator       ? QStringLiteral("Set %1 first").arg(name)
                       : hasTransport ? QStringLiteral("Locate transport to %1").arg(name)
                                      : QStringLiteral("Select a transport device first"));
    _capture->setEnabled(hasTimecode);
    _clear->setEnabled(locator.has_value());
}

void LocatorRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    Type::draw(painter, canvas.px(QRectF(0, 0, labelWidth - 8, rowHeight)), Qt::AlignRight, _label,
               Type::font(9 * canvas.scale, QFont::DemiBold, 0.6 * canvas.scale), canvas.look.tints.legend);
}

} // namespace tessik
