#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikKit/MIDI/MTCClock.h"

#include <QWidget>

namespace tessik {

/// The timecode display: the position, green while timecode runs and grey while it does not, with a lock lamp, its text
/// and the frame rate below.
class TimecodeCounter final : public QWidget {
    Q_OBJECT

public:
    TimecodeCounter(MTCClock& clock, DrawingContext& drawing, QWidget* parent = nullptr);

    // ---- what it shows
    QString timeText() const;
    QString lockText() const; ///< "LOCKED" or "NO TIMECODE"
    QString rateText() const; ///< empty without a position

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    MTCClock& _clock;
    DrawingContext& _drawing;
    QPropertyNotifier _position, _running;
    std::optional<MTCFrameRate> _shownRate;
};

} // namespace tessik
