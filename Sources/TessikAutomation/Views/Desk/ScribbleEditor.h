#pragma once

#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Desk/ScribbleFocusCoordinator.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QUndoStack>

class QAbstractButton;

namespace tessik {

/// A text field over the scribble strip being edited, with the colours below it, which Up and Down step through.
/// Whatever closes it keeps what was entered, except Escape.
class ScribbleEditor final : public QWidget {
    Q_OBJECT

public:
    ScribbleEditor(ScribbleFocusCoordinator& scribbles, ChannelLabelStore& labels, QUndoStack& history,
                   DrawingContext& drawing, QWidget* parent);

    /// Where a channel's strip is within the parent. Set once.
    std::function<QRect(const QString& channelID)> stripRect;
    /// A channel's spoken name: "channel 5".
    std::function<QString(const QString& channelID)> spokenName;
    /// Call when strips have moved.
    void follow();

    EntryField& field() const { return *_field; }
    /// A colour to click, in palette order.
    QAbstractButton& swatch(int index) const { return *_swatches[std::size_t(index)]; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void editingChanged();
    void keep();
    void close();
    void setColor(const QString& colorHex);
    void stepColor(int by);

    ScribbleFocusCoordinator& _scribbles;
    ChannelLabelStore& _labels;
    QUndoStack& _history;
    DrawingContext& _drawing;
    EntryField* _field;
    std::array<QAbstractButton*, channelLabelPalette.size()> _swatches{};
    std::optional<QString> _channelID; ///< of the strip shown
    QString _colorHex;
    QPropertyNotifier _editingObserver;
};

} // namespace tessik
