#include "TessikAutomation/Views/Automation/PassLanesView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Desk/StripSubject.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"
#include "TessikAutomation/Views/Theme/ToolTips.h"
#include "TessikAutomation/Views/Transport/TimecodeText.h"
#include "TessikKit/Models/FaderDBCalibration.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace tessik {
namespace {

using LanePainter::headWidth;
using LanePainter::plotEdge;
using LanePainter::rulerHeight;

constexpr QSize firstSize{1120, 640};
constexpr QSize leastSize{480, 240};
constexpr int plotMargin = 4;
constexpr int lineRoom = 8; ///< on both sides of the line, for its handle
constexpr double keyZoom = 1.5;
constexpr double wheelZoom = 1.25; ///< per notch
constexpr int wheelNotch = 120;
constexpr double widestFrame = 48; ///< pixels per frame when fully zoomed in
constexpr double mostPixels = 1e9; ///< per pass when fully zoomed in
constexpr double pageShare = 0.125;

const QString sheet = QStringLiteral(
    "QAbstractScrollArea { background: @rail; border: none; }"
    "QScrollBar { background: @rail; margin: 0; }"
    "QScrollBar:horizontal { height: 12px; } QScrollBar:vertical { width: 12px; }"
    "QScrollBar::handle { background: @handle; border-radius: 4px; margin: 2px; }"
    "QScrollBar::handle:horizontal { min-width: 32px; } QScrollBar::handle:vertical { min-height: 32px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: none; }");

} // namespace

PassLanesView& PassLanesView::open(const AutomationPass& pass, const LaneObjects& objects,
                                   const KeyboardArrowHandler& keys, QWidget* window) {
    PassLanesView* view = nullptr;
    for (PassLanesView* each : window->findChildren<PassLanesView*>(QString(), Qt::FindDirectChildrenOnly))
        if (each->_pass.id == pass.id) view = each;
    if (!view) {
        view = new PassLanesView(pass, objects, window);
        view->setAttribute(Qt::WA_DeleteOnClose);
        view->_keys.onPlayStop = keys.onPlayStop;
        view->_keys.onReturnToStart = keys.onReturnToStart;
    }
    view->show();
    view->raise();
    view->activateWindow();
    return *view;
}

PassLanesView::PassLanesView(const AutomationPass& pass, const LaneObjects& objects, QWidget* window)
    : QAbstractScrollArea(window), _objects(objects), _keys(*this) {
    setWindowFlag(Qt::Window);
    setHelpContext(*this, HelpContext::passes);
    setFrameShape(QFrame::NoFrame);
    setMinimumSize(leastSize);
    resize(firstSize);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    applyLook();
    showPass(pass);

    _observers.push_back(objects.drawing.look.addNotifier([this] { applyLook(); }));
    // Whoever is changing the list may not be done yet.
    const auto refreshSoon = [this] {
        QMetaObject::invokeMethod(
            this, [this] { refreshPass(); }, Qt::QueuedConnection);
    };
    _observers.push_back(objects.passes.passes.addNotifier(refreshSoon));
    _observers.push_back(objects.engine.recordingPass.addNotifier(refreshSoon));
    _observers.push_back(objects.labels.labelsByChannelID.addNotifier([this] { redraw(); }));
    const auto moved = [this] { followTape(); };
    _observers.push_back(objects.mtcClock.currentPosition.addNotifier(moved));
    _observers.push_back(objects.mtcClock.isRunning.addNotifier(moved));
}

void PassLanesView::applyLook() {
    _drawing.look = _objects.drawing.look.value();
    AppStyle::applySheet(*this, sheet, *_drawing.look.value());
    redraw();
}

// ---- the pass

void PassLanesView::showPass(const AutomationPass& pass) {
    _pass = pass;
    _lanes = std::make_unique<PassLanes>(pass);
    _timeline.start = pass.startTimecode;
    _timeline.start.frameRate = pass.frameRate;
    setWindowTitle(pass.name);
    setAccessibleName(QStringLiteral("Lanes of %1").arg(pass.name));
    setAccessibleDescription(
        QStringLiteral("%1 channels, %2 events").arg(_lanes->channels().size()).arg(pass.events.size()));
    _isFitted ? fitPass() : updateScrollBars();
}

void PassLanesView::refreshPass() {
    QList<AutomationPass> there = _objects.passes.passes.value();
    if (const auto& take = _objects.engine.waitingTake.value()) there.append(*take);
    for (const AutomationPass& pass : there) {
        if (pass.id != _pass.id) continue;
        if (pass != _pass) showPass(pass);
        return;
    }
    const auto& grows = _objects.engine.recordingPass.value();
    if (!grows || grows->id != _pass.id) close();
}

double PassLanesView::passLength() const {
    // The last frame must be visible too.
    return double(std::max<std::int64_t>(_lanes->lastOffset() + 1, framesPerSecond(_pass.frameRate)));
}

std::optional<double> PassLanesView::tapeOffset() const {
    const std::optional<TimecodePosition>& position = _objects.mtcClock.currentPosition.value();
    if (!position || position->frameRate != _pass.frameRate) return std::nullopt;
    const std::int64_t length = _lanes ? _lanes->lastOffset() : 0;
    return double(_pass.offsetOf(position->totalFrames(), length));
}

// ---- what is where

QRect PassLanesView::plotSpan() const {
    return {headWidth, 0, std::max(1, viewport()->width() - headWidth - plotMargin - plotEdge), viewport()->height()};
}
QRect PassLanesView::rulerRect() const { return {headWidth, 0, viewport()->width() - headWidth, rulerHeight}; }
QRect PassLanesView::counterRect() const { return {0, 0, headWidth, rulerHeight}; }
double PassLanesView::xOf(double offset) const { return plotSpan().x() + _timeline.xOf(offset); }

QRect PassLanesView::lineRect() const {
    const std::optional<double> offset = tapeOffset();
    if (!offset) return {};
    const double x = xOf(*offset);
    const QRect span = plotSpan();
    if (x < span.x() - lineRoom || x > span.right() + lineRoom) return {};
    return {int(x) - lineRoom, 0, 2 * lineRoom, span.height()};
}

double PassLanesView::closestZoom() const { return std::max(1 / widestFrame, passLength() / mostPixels); }

void PassLanesView::fitPass() {
    _isFitted = true;
    _timeline.framesPerPixel = std::max(closestZoom(), passLength() / plotSpan().width());
    setFirstOffset(0);
}

void PassLanesView::zoom(double factor, double x) {
    const double held = _timeline.offsetAt(x);
    const double widest = std::max(closestZoom(), passLength() / plotSpan().width());
    const double wanted = std::clamp(_timeline.framesPerPixel / factor, closestZoom(), widest);
    if (wanted >= widest) return fitPass();
    _isFitted = false;
    _timeline.framesPerPixel = wanted;
    setFirstOffset(held - x * wanted);
}

void PassLanesView::setFirstOffset(double offset) {
    const double most = passLength() - plotSpan().width() * _timeline.framesPerPixel;
    _timeline.firstOffset = std::clamp(offset, 0.0, std::max(0.0, most));
    updateScrollBars();
    redraw();
}

/// The scroll bars follow the timeline, which is finer than their whole pixels.
void PassLanesView::updateScrollBars() {
    _isScrolling = true;
    const int width = plotSpan().width();
    horizontalScrollBar()->setPageStep(width);
    horizontalScrollBar()->setSingleStep(int(width * pageShare));
    horizontalScrollBar()->setRange(0, std::max(0, int(passLength() / _timeline.framesPerPixel) - width));
    horizontalScrollBar()->setValue(int(std::lround(_timeline.firstOffset / _timeline.framesPerPixel)));
    int height = rulerHeight;
    for (const PassLanes::Channel& channel : _lanes->channels())
        height += LanePainter::laneHeight(channel);
    verticalScrollBar()->setPageStep(viewport()->height() - rulerHeight);
    verticalScrollBar()->setSingleStep(24);
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    _isScrolling = false;
    redraw();
}

void PassLanesView::scrollContentsBy(int dx, int) {
    if (_isScrolling) return;
    if (dx != 0) {
        _timeline.firstOffset = horizontalScrollBar()->value() * _timeline.framesPerPixel;
        _isFitted = false;
    }
    redraw();
}

void PassLanesView::resizeEvent(QResizeEvent*) { _isFitted ? fitPass() : setFirstOffset(_timeline.firstOffset); }

// ---- the tape

/// While the tape runs, the view turns the page with it, provided the line was in view.
void PassLanesView::followTape() {
    const QRect line = lineRect();
    const bool wasShown = !_shownLine.isEmpty();
    const std::optional<double> offset = tapeOffset();
    if (wasShown && line.isEmpty() && offset && _objects.mtcClock.isRunning.value() && *offset > 0 &&
        *offset < passLength())
        setFirstOffset(*offset - pageShare * plotSpan().width() * _timeline.framesPerPixel);
    viewport()->update(_shownLine);
    _shownLine = lineRect();
    viewport()->update(_shownLine);
    viewport()->update(counterRect());
}

void PassLanesView::locate(double x) {
    if (_objects.engine.isRecording()) return;
    TimecodePosition target = _timeline.start;
    target.addFrames(std::llround(std::max(0.0, _timeline.offsetAt(x))));
    _objects.transport.locate(target);
}

// ---- drawing

void PassLanesView::redraw() {
    _picture = {};
    _shownLine = lineRect();
    viewport()->update();
}

void PassLanesView::drawPicture() {
    const qreal ratio = viewport()->devicePixelRatioF();
    _picture = QPixmap(viewport()->size() * ratio);
    _picture.setDevicePixelRatio(ratio);
    QPainter painter(&_picture);
    Canvas canvas = _drawing.canvas(painter, ratio);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(canvas.px(QRectF(viewport()->rect())), canvas.look.railColor());
    int y = rulerHeight - verticalScrollBar()->value();
    const QMap<QString, ChannelLabel> labels = _objects.labels.labelsByChannelID.value();
    for (const PassLanes::Channel& channel : _lanes->channels()) {
        const QRect lane(0, y, viewport()->width(), LanePainter::laneHeight(channel));
        y += lane.height();
        if (lane.bottom() < rulerHeight || lane.top() > viewport()->height()) continue;
        const auto label = labels.constFind(channel.kind.id());
        LanePainter::paintLane(canvas, _drawing, lane, *_lanes, channel,
                               label == labels.constEnd() ? std::nullopt : std::optional(*label), _timeline);
    }
    LanePainter::paintRuler(canvas, _drawing, rulerRect(), _timeline);
    Parts::barShadow(painter, canvas.px(QRectF(0, rulerHeight, viewport()->width(), 6)));
    Parts::recess(painter, canvas.px(QRectF(counterRect().adjusted(0, 0, 0, -1))), canvas.scale,
                  canvas.look.tints.displayBackground, 0, canvas.look);
}

void PassLanesView::paintEvent(QPaintEvent*) {
    if (_picture.isNull()) drawPicture();
    QPainter painter(viewport());
    painter.drawPixmap(0, 0, _picture);
    Canvas canvas = _drawing.canvas(painter, viewport()->devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Tints& tints = canvas.look.tints;
    const bool isRunning = _objects.mtcClock.isRunning.value();
    TimecodeText::draw(canvas, canvas.px(QRectF(counterRect())),
                       TimecodeText::of(_objects.mtcClock.currentPosition.value()), 18,
                       isRunning ? tints.ledGreen : withAlpha(tints.display, 0.75));
    const QRect around = lineRect();
    if (around.isEmpty()) return;
    painter.setClipRect(canvas.px(QRectF(plotSpan().adjusted(-lineRoom, 0, plotMargin, 0))));
    const double x = xOf(*tapeOffset());
    const QColor color = isRunning ? tints.active : tints.text;
    const QRect line(canvas.px(x), canvas.px(rulerHeight), canvas.line(1.5), canvas.px(viewport()->height()));
    painter.fillRect(line.adjusted(-canvas.line(), 0, canvas.line(), 0), withAlpha(Qt::black, 0.35));
    painter.fillRect(line, color);
    QPolygonF handle;
    handle << QPointF(x - 6, rulerHeight - 9) << QPointF(x + 6, rulerHeight - 9) << QPointF(x, rulerHeight);
    for (QPointF& point : handle)
        point = point * canvas.scale + QPointF(line.width() / 2.0, 0);
    painter.setPen(QPen(withAlpha(Qt::black, 0.6), canvas.line()));
    painter.setBrush(color);
    painter.drawPolygon(handle);
}

// ---- hands

bool PassLanesView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        ToolTips::show(help->globalPos(), helpAt(help->pos()), viewport(), {});
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

QString PassLanesView::helpAt(QPoint at) const {
    if (at.x() < headWidth) return {};
    TimecodePosition position = _timeline.start;
    const auto offset = std::int64_t(std::floor(_timeline.offsetAt(at.x() - plotSpan().x())));
    position.addFrames(offset);
    if (at.y() < rulerHeight) {
        if (_objects.engine.isRecording())
            return QStringLiteral("The transport is not located while a take is being recorded");
        if (!_objects.transport.port.isReachable()) return QStringLiteral("Select a transport device first");
        return QStringLiteral("Locate transport to %1").arg(position.withinDay().displayString());
    }
    int y = rulerHeight - verticalScrollBar()->value();
    for (const PassLanes::Channel& channel : _lanes->channels()) {
        y += LanePainter::laneHeight(channel);
        if (at.y() >= y) continue;
        QStringList told{spokenName(channel.kind), position.withinDay().displayString()};
        if (const auto value = _lanes->valueAt(MIDIChannelMapping::faderCC(channel.kind), offset))
            told << FaderDBCalibration::displayString(*value) + QStringLiteral(" dB");
        if (const auto byte = _lanes->valueAt(MIDIChannelMapping::switchCC(channel.kind), offset))
            for (const LaneSwitch& each : laneSwitches)
                if (MIDIChannelMapping::decodeSwitchByte(std::uint8_t(*byte)).*each.member)
                    told << QLatin1String(each.name);
        return told.join(QStringLiteral("  ·  "));
    }
    return {};
}

void PassLanesView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const QPoint at = event->position().toPoint();
    if (rulerRect().contains(at)) return locate(at.x() - plotSpan().x());
    _dragFrom = at;
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void PassLanesView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (!_dragFrom) {
        viewport()->setCursor(rulerRect().contains(at) && !_objects.engine.isRecording() ? Qt::PointingHandCursor
                              : at.x() >= headWidth && at.y() >= rulerHeight             ? Qt::OpenHandCursor
                                                                                         : Qt::ArrowCursor);
        return;
    }
    const QPoint by = at - *std::exchange(_dragFrom, at);
    verticalScrollBar()->setValue(verticalScrollBar()->value() - by.y());
    if (by.x() != 0) setFirstOffset(_timeline.firstOffset - by.x() * _timeline.framesPerPixel);
}

void PassLanesView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(_dragFrom, std::nullopt)) return;
    viewport()->setCursor(Qt::OpenHandCursor);
}

void PassLanesView::wheelEvent(QWheelEvent* event) {
    event->accept();
    const QPoint turned = event->angleDelta();
    const double along = plotSpan().width() * pageShare * _timeline.framesPerPixel / wheelNotch;
    const bool isShifted = event->modifiers() & Qt::ShiftModifier;
    if (turned.x() != 0 || isShifted) {
        setFirstOffset(_timeline.firstOffset - along * (turned.x() != 0 ? turned.x() : turned.y()));
    } else if (event->position().x() < headWidth) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() - turned.y() / 2);
    } else {
        zoom(std::pow(wheelZoom, double(turned.y()) / wheelNotch), event->position().x() - plotSpan().x());
    }
}

void PassLanesView::keyPressEvent(QKeyEvent* event) {
    const QRect span = plotSpan();
    const double page = span.width() * pageShare * _timeline.framesPerPixel;
    const auto scrollDown = [this](int by) { verticalScrollBar()->setValue(verticalScrollBar()->value() + by); };
    // The line stays where it is if visible, else the middle does.
    const double fixed = lineRect().isEmpty() ? span.width() / 2.0 : xOf(*tapeOffset()) - span.x();
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: return zoom(keyZoom, fixed);
    case Qt::Key_Minus: return zoom(1 / keyZoom, fixed);
    case Qt::Key_0: return fitPass();
    case Qt::Key_Left: return setFirstOffset(_timeline.firstOffset - page);
    case Qt::Key_Right: return setFirstOffset(_timeline.firstOffset + page);
    case Qt::Key_Home: return setFirstOffset(0);
    case Qt::Key_End: return setFirstOffset(passLength());
    case Qt::Key_Up: return scrollDown(-verticalScrollBar()->singleStep());
    case Qt::Key_Down: return scrollDown(verticalScrollBar()->singleStep());
    case Qt::Key_PageUp: return scrollDown(-verticalScrollBar()->pageStep());
    case Qt::Key_PageDown: return scrollDown(verticalScrollBar()->pageStep());
    case Qt::Key_Escape: close(); return;
    default: event->ignore();
    }
}

} // namespace tessik
