#pragma once

#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/Session/LocatorStore.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikAutomation/Views/Window/HeaderPart.h"
#include "TessikKit/MIDI/MTCClock.h"

class QUndoStack;

namespace tessik {

class KeyboardArrowHandler;
class LocatorRow;
class PanelButton;
class TimecodeCounter;

/// The transport: timecode counter, locators and the recorder's keys. Dark in either theme. Nothing here waits for the
/// machine; the counter is the only evidence that it moved.
class TransportPanelView final : public HeaderPart {
    Q_OBJECT

public:
    /// Returns the end of the selected pass, if one is selected.
    using PassEnd = std::function<std::optional<TimecodePosition>()>;

    /// `history` can undo what was set or cleared here.
    TransportPanelView(MTCClock& clock, LocatorStore& locators, TransportManager& transport, QUndoStack& history,
                       PassEnd passEnd, QWidget* parent = nullptr);

    /// Space plays and stops, Return goes to the start, C captures START and Shift+C END.
    void bindKeys(KeyboardArrowHandler& keys);
    /// Stops if timecode runs, else plays.
    void togglePlay();
    /// To the START locator, or to zero.
    void goToStart();
    /// To the END locator, or to the end of the selected pass.
    void goToEnd();
    /// The end of the selected pass may have changed.
    void refresh();

    int neededWidth(HeaderFit fit) const override;
    void setFit(HeaderFit fit) override;

    LocatorRow& startRow() const { return *_startRow; }
    LocatorRow& endRow() const { return *_endRow; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void connectRow(LocatorRow& row, const QString& name, const std::function<LocatorStore::Locator()>& read,
                    const std::function<void(const LocatorStore::Locator&)>& assign);
    PanelButton* addKey(const QString& icon, const QString& legend, const QString& name, const QString& help,
                        std::function<void()> press);
    std::optional<TimecodePosition> songEnd() const;

    MTCClock& _clock;
    LocatorStore& _locators;
    TransportManager& _transport;
    QUndoStack& _history;
    const PassEnd _passEnd;
    DrawingContext _drawing; // of its own: dark
    TimecodeCounter* _counter;
    LocatorRow* _startRow;
    LocatorRow* _endRow;
    std::vector<PanelButton*> _keys; ///< from left to right
    PanelButton* _toStart;
    PanelButton* _toEnd;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
