#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/Views/Automation/LanePainter.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QAbstractScrollArea>

namespace tessik {

/// What the windows that show passes work on. All must outlive them.
struct LaneObjects {
    PassStore& passes;
    PassEngine& engine;
    ChannelLabelStore& labels;
    MTCClock& mtcClock;
    TransportManager& transport;
    DrawingContext& drawing; ///< whose look they follow
};

/// A window that shows one pass: a lane for each channel that moves in it, below a ruler, with a line at the tape's
/// position. The wheel zooms, a drag scrolls, a click on the ruler locates the transport. Closes when its pass is gone,
/// including a take that waits.
class PassLanesView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// Brings up that pass's window over `window`, a new one if none is open. `keys` belong to the main window; its
    /// Space and Return work here too.
    static PassLanesView& open(const AutomationPass& pass, const LaneObjects& objects, const KeyboardArrowHandler& keys,
                               QWidget* window);
    PassLanesView(const AutomationPass& pass, const LaneObjects& objects, QWidget* window);

    /// Fits the whole pass into the width.
    void fitPass();
    /// A factor above 1 zooms in; what is at `x` of the plot stays there.
    void zoom(double factor, double x);

    const LaneTimeline& timeline() const { return _timeline; }
    /// The position of a frame offset, in pixels of the viewport.
    double xOf(double offset) const;
    QRect rulerRect() const;
    /// Where the tape is, as a frame offset; none if unknown or at another frame rate.
    std::optional<double> tapeOffset() const;

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void applyLook();
    void showPass(const AutomationPass& pass);
    void refreshPass();
    void redraw();
    void drawPicture();
    QRect plotSpan() const;
    QRect counterRect() const;
    QRect lineRect() const;
    void followTape();
    void updateScrollBars();
    void setFirstOffset(double offset);
    double passLength() const;
    double closestZoom() const;
    void locate(double x);
    QString helpAt(QPoint at) const;

    LaneObjects _objects;
    DrawingContext _drawing;
    AutomationPass _pass;
    std::unique_ptr<PassLanes> _lanes;
    LaneTimeline _timeline;
    KeyboardArrowHandler _keys;
    QPixmap _picture; ///< everything that does not move with the tape
    bool _isFitted = true;
    bool _isScrolling = false;
    QRect _shownLine;
    std::optional<QPoint> _dragFrom;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
