#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Controls/ControlHost.h"
#include "TessikAutomation/Views/Desk/ChannelStrip.h"
#include "TessikAutomation/Views/Desk/HorizontalOnlyScrollView.h"
#include "TessikAutomation/Views/Desk/ScribbleFocusCoordinator.h"
#include "TessikAutomation/Views/Desk/SettingsClipboard.h"
#include "TessikAutomation/Views/Desk/StripSelection.h"
#include "TessikAutomation/Views/Desk/VerticalOnlyScrollView.h"

#include <QMenu>

namespace tessik {

class PanelButton;
class ScribbleEditor;

/// The console on screen. Its inputs scroll sideways, and their upper halves vertically; the master section, stereo and
/// groups stay put. All faders are anchored to the lower edge, and grow once the modules are complete.
class DeskView final : public QWidget {
    Q_OBJECT

public:
    /// `history` records what can be undone.
    DeskView(const AppObjects& objects, QUndoStack& history, DrawingContext& drawing, QWidget* parent = nullptr);

    ControlHost* strip(ChannelKind kind) const; ///< from BYPASS down; null if there is no such channel
    ControlHost* inputModule(int number) const { return _modules[std::size_t(number - 1)]; } ///< of input 1 to 32
    ControlHost* master() const { return _master; }
    HorizontalOnlyScrollView& inputs() const { return *_inputs; }
    VerticalOnlyScrollView& moduleView() const { return *_moduleView; }
    ScribbleFocusCoordinator& scribbles() { return _scribbles; }
    ScribbleEditor& scribbleEditor() const { return *_scribbleEditor; }
    StripSelection& selection() { return _selection; }
    /// What can be done with a channel's settings; `parent` owns the menu. Only inputs have one.
    QMenu* stripMenu(const QString& channelID, QWidget* parent);

    /// Places a small view in the lower right corner, below the fixed strips and as far to the left as it needs.
    void setStatusView(QWidget* view);
    /// Moves the inputs by one strip.
    void pageInputs(bool forward);
    /// Whether the master section is folded away and the strips below it are narrow. Remembered on this machine.
    QProperty<bool> isFolded{false};
    /// The width of the strips that do not scroll.
    int fixedWidth() const;
    int stripHeight() const;

    /// The desk's zoom levels, in percent.
    static constexpr std::array zoomSteps{88, 100, 125, 150};
    int zoom() const { return _zoom; }
    /// Goes to the nearest step; remembered on this machine.
    void setZoom(int percent);
    /// Goes to the next larger or smaller step.
    void changeZoom(bool larger);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    ControlHost* addHost(const ControlTable<StripSubject>& table, const StripSubject& subject, QWidget* parent);
    void addChannel(ChannelState& channel);
    void revealInput(const ControlHost& host);
    void layOut();
    void applyLook();
    int stereoWidth() const;
    int groupWidth() const;
    void showFold();
    int scaled(int units) const { return int(std::lround(units * _drawing.zoom.value())); }

    const AppObjects _objects;
    QUndoStack& _history;
    DrawingContext& _windowDrawing;
    DrawingContext _drawing; ///< zoomed
    int _zoom = 100;
    ScribbleFocusCoordinator _scribbles;
    StripSelection _selection;
    SettingsClipboard _clipboard;
    HorizontalOnlyScrollView* _inputs;
    VerticalOnlyScrollView* _moduleView;
    VerticalOnlyScrollView* _masterView = nullptr;
    ControlHost* _master = nullptr;
    std::array<ControlHost*, 2> _blank; ///< beyond the last input, in wider windows: above, below
    ControlHost* _folded;               ///< in place of the master section
    PanelButton* _foldKey;
    QWidget* _status = nullptr;
    ScribbleEditor* _scribbleEditor;
    std::vector<ControlHost*> _modules; ///< of the inputs
    std::vector<ControlHost*> _strips;  ///< inputs, groups, stereo
    std::optional<quint64> _scrolledAt; ///< time stamp of the last wheel event that moved the inputs
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
