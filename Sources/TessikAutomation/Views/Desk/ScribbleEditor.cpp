#include "TessikAutomation/Views/Desk/ScribbleEditor.h"

#include "TessikAutomation/Views/Controls/AccessibleRole.h"
#include "TessikAutomation/Views/Controls/ScribbleStrip.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/Materials.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

namespace tessik {
namespace {

constexpr int margin = 6;
constexpr int fieldHeight = 26;
constexpr int swatchSide = 18;
constexpr int swatchPitch = 21;
constexpr int swatchCount = int(channelLabelPalette.size());
constexpr QSize panelSize(2 * margin + swatchCount * swatchPitch - (swatchPitch - swatchSide),
                          3 * margin + fieldHeight + swatchSide);

/// Their names for anyone who cannot see them.
constexpr std::array<const char*, swatchCount> colorNames{"grey", "red",    "orange", "yellow", "green",
                                                          "blue", "indigo", "purple", "pink"};

/// One colour. The keyboard focus stays with the name, or Return would go to the window.
class Swatch final : public QAbstractButton {
public:
    Swatch(int index, DrawingContext& drawing, QWidget* parent)
        : QAbstractButton(parent),
          _color(ScribbleStrip::color(QLatin1String(channelLabelPalette[std::size_t(index)]))),
          _drawing(drawing) {
        setGeometry(
            QRect(margin + index * swatchPitch, 2 * margin + fieldHeight, swatchSide, swatchSide).marginsAdded(around));
        setFocusPolicy(Qt::NoFocus);
        setCheckable(true);
        setAccessibleName(QLatin1String(colorNames[std::size_t(index)]));
        setToolTip(accessibleName());
    }

protected:
    void nextCheckState() override {} // the editor decides which one is checked
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF place(rect().marginsRemoved(around));
        if (isChecked()) {
            painter.setPen(QPen(_drawing.look.value()->tints.focusRing, 2));
            painter.drawRoundedRect(place.adjusted(-1.5, -1.5, 1.5, 1.5), 5, 5);
        }
        painter.setPen(QPen(withAlpha(Qt::black, 0.5), 1));
        painter.setBrush(_color);
        painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), 3.5, 3.5);
    }

private:
    static constexpr QMargins around{3, 3, 3, 3}; // for the ring, and so that few clicks fall between two

    const QColor _color;
    DrawingContext& _drawing;
};

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
    setAccessibleRole(*this, QAccessible::Grouping);
    // Clicking a colour leaves the keyboard focus with the name, or Return would go to the window.
    setFocusPolicy(Qt::ClickFocus);
    setFocusProxy(_field);
    _field->setGeometry(margin, margin, panelSize.width() - 2 * margin, fieldHeight);
    _field->setAlignment(Qt::AlignCenter);
    _field->setPlaceholderText(QStringLiteral("Name"));
    _field->setFont(Type::font(13, QFont::DemiBold));
    _field->setStyleSheet(QStringLiteral("QLineEdit { background: %1; color: %2; border: 1px solid %3;"
                                         " border-radius: 3px; selection-background-color: %4; }")
                              .arg(Materials::tape.name(), Materials::tapeInk.name(), Materials::tapeEdge.name(),
                                   Materials::chosenNumber.name()));
    hide();
    for (int i = 0; i < swatchCount; ++i) {
        _swatches[std::size_t(i)] = new Swatch(i, drawing, this);
        connect(_swatches[std::size_t(i)], &QAbstractButton::clicked, this,
                [this, i] { setColor(QLatin1String(channelLabelPalette[std::size_t(i)])); });
    }
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
    setColor(label == labels.constEnd() ? QLatin1String(channelLabelPalette[0]) : label->colorHex);
    setAccessibleName(spokenName(*_channelID) + QStringLiteral(", name and colour"));
    _field->setAccessibleName(spokenName(*_channelID) + QStringLiteral(", name"));
    _field->selectAll();
    follow();
    show();
    raise();
    update();
    _field->setFocus(Qt::OtherFocusReason);
    qApp->installEventFilter(this);
}

void ScribbleEditor::setColor(const QString& colorHex) {
    _colorHex = colorHex;
    QString name = QStringLiteral("of its own"); // from a file
    for (int i = 0; i < swatchCount; ++i) {
        const bool isChosen = _colorHex == QLatin1String(channelLabelPalette[std::size_t(i)]);
        _swatches[std::size_t(i)]->setChecked(isChosen);
        if (isChosen) name = _swatches[std::size_t(i)]->accessibleName();
    }
    _field->setAccessibleDescription(QStringLiteral("colour %1; Up and Down choose another").arg(name));
}

/// Wraps around; from a custom colour it goes to the first or the last.
void ScribbleEditor::stepColor(int by) {
    int at = by > 0 ? -1 : swatchCount;
    for (int i = 0; i < swatchCount; ++i)
        if (_swatches[std::size_t(i)]->isChecked()) at = i;
    setColor(QLatin1String(channelLabelPalette[std::size_t((at + by + swatchCount) % swatchCount)]));
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

void ScribbleEditor::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = *_drawing.look.value();
    painter.setPen(QPen(look.tints.edgeShadow, 1));
    painter.setBrush(blend(look.palette.appBackground, Qt::white, look.isDark() ? 0.1 : 0.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
}

bool ScribbleEditor::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::KeyPress && object == _field) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Up && key != Qt::Key_Down) return false;
        stepColor(key == Qt::Key_Down ? 1 : -1);
        return true;
    }
    if (event->type() == QEvent::Shortcut) {
        close(); // before the command, which may replace the session
    } else if (event->type() == QEvent::MouseButtonPress && object->isWidgetType()) {
        auto* pressed = static_cast<QWidget*>(object);
        if (pressed != this && !isAncestorOf(pressed) && pressed->window() == window()) close();
    }
    return false;
}

} // namespace tessik
