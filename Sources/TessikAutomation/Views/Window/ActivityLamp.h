#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikKit/Models/UptimeClock.h"

#include <QTimer>
#include <QWidget>

namespace tessik {

/// A small lamp with a legend that lights while messages pass. Its timer runs only while it is lit, and it repaints
/// only when it goes on or off.
class ActivityLamp final : public QWidget {
    Q_OBJECT

public:
    /// How long it stays lit after a message.
    static constexpr std::chrono::milliseconds hold{120};

    ActivityLamp(const QString& legend, DrawingContext& drawing, QWidget* parent,
                 const UptimeClock& clock = UptimeClock::system());

    /// A message passed.
    void flash();
    bool isLit() const { return _isLit; }
    /// Goes out if the time is up. The lamp's own timer calls it.
    void checkHold();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QString _legend;
    DrawingContext& _drawing;
    const UptimeClock& _clock;
    bool _isLit = false;
    Uptime _lastMessage = distantPast;
    QTimer _timer;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
