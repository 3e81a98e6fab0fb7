#pragma once

#include "TessikAutomation/Views/Controls/ControlHost.h"
#include "TessikAutomation/Views/Desk/ChannelStrip.h"
#include "TessikAutomation/Views/Desk/HorizontalOnlyScrollView.h"

namespace tessik {

/// The console on screen: the inputs that its size has, scrolling sideways, then stereo and groups, which stay.
class DeskView final : public QWidget {
    Q_OBJECT

public:
    DeskView(ConsoleModel& consoleModel, DeskEditor& editor, DrawingContext& drawing, QWidget* parent = nullptr);

    ControlHost* strip(ChannelKind kind) const; ///< null for no channel
    HorizontalOnlyScrollView& inputs() const { return *_inputs; }
    /// Places a small view in the lower right corner, below the strips that stay.
    void setStatusView(QWidget* view);
    /// Moves the inputs by one strip.
    void pageInputs(bool forward);
    /// The width of the strips that do not scroll.
    static int fixedWidth();
    int stripHeight() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    ControlHost* addStrip(ChannelState& channel, QWidget* parent);
    void layOut();
    void applyLook();

    ConsoleModel& _consoleModel;
    DeskEditor& _editor;
    DrawingContext& _drawing;
    HorizontalOnlyScrollView* _inputs;
    ControlHost* _blank; ///< beyond the last input, where the window is wider
    QWidget* _status = nullptr;
    std::vector<ControlHost*> _strips; ///< inputs, groups, stereo
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
