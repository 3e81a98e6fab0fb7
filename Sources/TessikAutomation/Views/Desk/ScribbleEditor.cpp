#include "TessikAutomation/Views/Desk/ScribbleEditor.h"

#include "TessikAutomation/Views/Controls/ScribbleStrip.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QApplication>
#include <QMouseEvent>

namespace tessik {
namespace {

constexpr int margin = 6;
constexpr int fieldHeight = 26;
constexpr int swatch = 18;
constexpr int swatchPitch = 21;
constexpr int swatchCount = int(channelLabelPalette.size());
constexpr QSize panelSize(2 * margin + swatchCount * swatchPitch - (swatchPitch - swatch),
                          3 * margin + fieldHeight + swatch);

class LabelEdit final : public QUndoCommand {
public:
    LabelEdit(const QString& what, ChannelLabelStore& labels, QString channelID, ChannelLabel after)
        : QUndoCommand(what), _labels(labels), _channelID(std::move(channelID)), _after(std::move(after)) {
        const auto all = labels.labelsByChannelID.value();
        if (const auto found = all.constFind(_channelID); found != all.constEnd()) _before = *found;
    }
    void redo() override { _labels.update(_after, _channelID); }
    void undo() override {
        if (_before)
            _labels.update(*_before, _channelID);
        else
            _labels.remove(_channelID);
    }

private:
    ChannelLabelStore& _labels;
    QString _channelID;
    std::optional<ChannelLabel> _before;
    ChannelLabel _after;
};

} // namespace

ScribbleEditor::ScribbleEditor(ScribbleFocusCoordinator& scribbles, ChannelLabelStore& labels, QUndoStack& history,
                               DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _scribbles(scribbles),
      _labels(labels),
      _history(history),
      _drawing(drawing),
      _field(new EntryField(this)) {
    resize(panelSize);
    // A click on a colour leaves the keyboard with the name, else Return would be the window's.
    setFocusPolicy(Qt::ClickFocus);
    setFocusProxy(_field);
    _field->setGeometry(margin, margin, panelSize.width() - 2 * margin, fieldHeight);
    _field->setAlignment(Qt::AlignCenter);
    _field->setPlaceholderText(QStringLiteral("Name"));
    _field->setFont(Type::font(13, QFont::DemiBold));
    _field->setStyleSheet(QStringLiteral("QLineEdit { background: #F7F3E8; color: #1B1A18; border: 1px solid #5A5650;"
                                         " border-radius: 3px; selection-background-color: #5AB0FF; }"));
    hide();
    connect(_field, &EntryField::kept, this, &ScribbleEditor::close);
    connect(_field, &EntryField::dropped, this, [this] {
        _channelID.reset();
        close();
    });
    connect(_field, &EntryField::moved, this, [this](bool forward) {
        keep();
        if (const auto id = _channelID) _scribbles.advance(*id, forward);
    });
    _editingObserver = scribbles.editingID.addNotifier([this] { editingChanged(); });
}

void ScribbleEditor::close() { _scribbles.editingID = std::nullopt; }

void ScribbleEditor::editingChanged() {
    keep();
    _channelID = _scribbles.editingID.value();
    if (!_channelID) {
        qApp->removeEventFilter(this);
        const bool hadFocus = _field->hasFocus();
        hide();
        if (hadFocus) parentWidget()->setFocus(Qt::OtherFocusReason);
        return;
    }
    const auto labels = _labels.labelsByChannelID.value();
    const auto label = labels.constFind(*_channelID);
    _field->setText(label == labels.constEnd() ? QString() : label->name);
    _colorHex = label == labels.constEnd() ? QLatin1String(channelLabelPalette[0]) : label->colorHex;
    _field->setAccessibleName(spokenName(*_channelID) + QStringLiteral(", name"));
    _field->selectAll();
    follow();
    show();
    raise();
    update();
    _field->setFocus(Qt::OtherFocusReason);
    qApp->installEventFilter(this);
}

void ScribbleEditor::keep() {
    if (!_channelID) return;
    const auto labels = _labels.labelsByChannelID.value();
    const auto stored = labels.constFind(*_channelID);
    const ChannelLabel before =
        stored == labels.constEnd() ? ChannelLabel{QString(), QLatin1String(channelLabelPalette[0])} : *stored;
    const ChannelLabel after{_field->text().trimmed(), _colorHex};
    if (after == before) return;
    _history.push(new LabelEdit(QStringLiteral("label, ") + spokenName(*_channelID), _labels, *_channelID, after));
}

void ScribbleEditor::follow() {
    if (!_channelID) return;
    const QRect strip = stripRect(*_channelID);
    const QPoint wanted(strip.center().x() - width() / 2, strip.center().y() - margin - fieldHeight / 2);
    move(std::clamp(wanted.x(), 2, std::max(2, parentWidget()->width() - width() - 2)), wanted.y());
}

QRect ScribbleEditor::swatchRect(int index) const {
    return {margin + index * swatchPitch, 2 * margin + fieldHeight, swatch, swatch};
}

void ScribbleEditor::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = *_drawing.look.value();
    painter.setPen(QPen(look.isDark() ? QColor(0, 0, 0) : QColor(0x6E, 0x6A, 0x66), 1));
    painter.setBrush(blend(look.palette.appBackground, Qt::white, look.isDark() ? 0.1 : 0.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    for (int i = 0; i < swatchCount; ++i) {
        const QString hex = QLatin1String(channelLabelPalette[std::size_t(i)]);
        const QRectF place(swatchRect(i));
        if (hex == _colorHex) {
            painter.setPen(QPen(look.tints.focusRing, 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(place.adjusted(-1.5, -1.5, 1.5, 1.5), 5, 5);
        }
        painter.setPen(QPen(withAlpha(Qt::black, 0.5), 1));
        painter.setBrush(ScribbleStrip::color(hex));
        painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), 3.5, 3.5);
    }
}

void ScribbleEditor::mousePressEvent(QMouseEvent* event) {
    for (int i = 0; i < swatchCount; ++i)
        if (swatchRect(i).adjusted(-1, -2, 2, 3).contains(event->position().toPoint()))
            _colorHex = QLatin1String(channelLabelPalette[std::size_t(i)]);
    update();
}

bool ScribbleEditor::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Shortcut) {
        close(); // before the command, which may replace the session
    } else if (event->type() == QEvent::MouseButtonPress && object->isWidgetType()) {
        auto* pressed = static_cast<QWidget*>(object);
        if (pressed != this && !isAncestorOf(pressed) && pressed->window() == window()) close();
    }
    return false;
}

} // namespace tessik
