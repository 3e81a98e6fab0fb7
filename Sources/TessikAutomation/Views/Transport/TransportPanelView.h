#pragma once

#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/Session/LocatorStore.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikKit/MIDI/MTCClock.h"

#include <QWidget>

namespace tessik {

class LocatorRow;
class PanelButton;

/// The transport: timecode counter, locators and the recorder's keys. Dark whatever the theme. Nothing here waits for
/// the machine; the counter is the only evidence that it moved.
class TransportPanelView final : public QWidget {
    Q_OBJECT

public:
    /// Yields the end of the selected pass, if one is selected.
    using PassEnd = std::function<std::optional<TimecodePosition>()>;

    TransportPanelView(MTCClock& clock, LocatorStore& locators, TransportManager& transport, PassEnd passEnd,
                       QWidget* parent = nullptr);

    /// Stops while timecode runs, else plays.
    void togglePlay();
    /// To the START locator, or to zero.
    void goToStart();
    /// To the END locator, or to the end of the selected pass.
    void goToEnd();
    /// The end of the selected pass may have changed.
    void refresh();

    LocatorRow& startRow() const { return *_startRow; }
    LocatorRow& endRow() const { return *_endRow; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void connectRow(LocatorRow& row, std::function<LocatorStore::Locator()> read,
                    std::function<void(const LocatorStore::Locator&)> write);
    PanelButton* addKey(int x, const QString& icon, const QString& legend, const QString& name, const QString& help,
                        std::function<void()> press);
    std::optional<TimecodePosition> songEnd() const;

    MTCClock& _clock;
    LocatorStore& _locators;
    TransportManager& _transport;
    const PassEnd _passEnd;
    DrawingContext _drawing; // of its own: dark
    LocatorRow* _startRow;
    LocatorRow* _endRow;
    PanelButton* _toStart;
    PanelButton* _toEnd;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
