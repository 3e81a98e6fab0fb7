#pragma once

#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Desk/ScribbleFocusCoordinator.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QUndoStack>

namespace tessik {

/// A text field over the scribble strip that is being edited, with the colours below it. Whatever closes it keeps what
/// was entered, but for Escape.
class ScribbleEditor final : public QWidget {
    Q_OBJECT

public:
    ScribbleEditor(ScribbleFocusCoordinator& scribbles, ChannelLabelStore& labels, QUndoStack& history,
                   DrawingContext& drawing, QWidget* parent);

    /// Where the strip of a channel is on the parent. Set once.
    std::function<QRect(const QString& channelID)> stripRect;
    /// How a channel is spoken of: "channel 5".
    std::function<QString(const QString& channelID)> spokenName;
    /// To be called when strips moved.
    void follow();

    EntryField& field() const { return *_field; }
    QRect swatchRect(int index) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void editingChanged();
    void keep();
    void close();

    ScribbleFocusCoordinator& _scribbles;
    ChannelLabelStore& _labels;
    QUndoStack& _history;
    DrawingContext& _drawing;
    EntryField* _field;
    std::optional<QString> _channelID; ///< of the strip shown
    QString _colorHex;
    QPropertyNotifier _editingObserver;
};

} // namespace tessik
