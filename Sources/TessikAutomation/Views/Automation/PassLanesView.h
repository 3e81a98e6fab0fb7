#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/Views/Automation/LanePainter.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QAbstractScrollArea>

namespace tessik {

/// What the windows that show passes work on. All outlive them.
struct LaneObjects {
    PassStore& passes;
    PassEngine& engine;
    ChannelLabelStore& labels;
    MTCClock& mtcClock;
    TransportManager& transport;
    DrawingContext& drawing; ///< whose look is followed
};

/// A window that shows one pass: a lane for each channel that moves in it, below a ruler, with a line where the tape
/// is. The wheel zooms, a drag moves, a click on the ruler locates the transport. It closes when its pass is gone; a
/// take that waits is one.
class PassLanesView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// Brings up the window of that pass over `window`, a new one where none is open. `keys` are those of the main
    /// window, whose Space and Return work here too.
    static PassLanesView& open(const AutomationPass& pass, const LaneObjects& objects, const KeyboardArrowHandler& keys,
                               QWidget* window);
    PassLanesView(const AutomationPass& pass, const LaneObjects& objects, QWidget* window);

    /// The whole pass in the width.
    void fitPass();
    /// By a factor above 1 closer; what is at `x` of the plot stays there.
    void zoom(double factor, double x);

    const LaneTimeline& timeline() const { return _timeline; }
    /// Where a frame offset lies, in pixels of the viewport.
    double xOf(double offset) const;
    QRect rulerRect() const;
    /// Where the tape is, as frame offset; none where it is unknown or of another frame rate.
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
    QPixmap _picture; ///< everything but what moves with the tape
    bool _isFitted = true;
    bool _isScrolling = false;
    QRect _shownLine;
    std::optional<QPoint> _dragFrom;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
