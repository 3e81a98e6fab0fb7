#pragma once

#include "TessikAutomation/Views/Monitor/MonitorModel.h"

#include <QTimer>
#include <QWidget>

class QAbstractButton;
class QLabel;
class QTableView;

namespace tessik {

/// A window that lists what passes the MIDI ports, in and out: time, port, meaning and bytes. Makes text only while it
/// is open.
class MIDIMonitorView final : public QWidget {
    Q_OBJECT

public:
    /// `monitor`: the ports. `window` is the main window, to which it belongs.
    MIDIMonitorView(MIDIMonitor monitor, QWidget* window);

    QTableView& table() const { return *_table; }
    QAbstractButton& pauseKey() const { return *_pause; }
    /// Puts the selected lines, or all, on the clipboard.
    void copy() const;
    /// Shows what has passed. A timer calls it while the window is open and not paused.
    void look();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void keepTime();

    MIDIMonitor _monitor;
    MonitorModel* _model;
    QTableView* _table;
    QAbstractButton* _pause;
    QTimer _timer;
};

} // namespace tessik
