#include "TessikAutomation/Views/Automation/LanePainter.h"

#include "TessikAutomation/Views/Controls/FaderTrackView.h"
#include "TessikAutomation/Views/Controls/ScribbleStrip.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Transport/TimecodeText.h"
#include "TessikKit/Models/FaderDBCalibration.h"

#include <cmath>

namespace tessik {
namespace {

constexpr int laneGap = 6;
constexpr int plotMargin = 4; ///< of the lane, around the plot
constexpr int curveHeight = 76;
constexpr int curveInset = 6; ///< so that a fader at either end is fully visible
constexpr int scaleGap = 6;   ///< from the scale to the plot
constexpr int switchPitch = 14;
constexpr int barHeight = 8;
constexpr int switchesTop = 2;
constexpr int headPadding = 10;
constexpr int labelWidth = 104; ///< minimum between two ruler labels
constexpr int rulerTextWidth = 74;
constexpr double maxFader = 127;

int switchCount(const PassLanes::Channel& channel) {
    return int(std::count_if(laneSwitches.begin(), laneSwitches.end(),
                             [&](const LaneSwitch& each) { return channel.switches.*each.member; }));
}

QRect plotRect(const QRect& lane) {
    return lane.adjusted(LanePainter::headWidth, plotMargin, -plotMargin, -plotMargin - laneGap);
}

/// The plot without its edge.
QRect insidePlot(const QRect& plot) {
    constexpr int edge = LanePainter::plotEdge;
    return plot.adjusted(edge, edge, -edge, -edge);
}

double curveY(const QRect& curve, double value) {
    return curve.bottom() + 1 - curveInset - (curve.height() - 2 * curveInset) * value / maxFader;
}

/// The marks that fit in a lane.
bool isLabelled(const FaderTrackView::Mark& mark) {
    static const QStringList labelled{QStringLiteral("+10"), QStringLiteral("+0"),  QStringLiteral("-10"),
                                      QStringLiteral("-20"), QStringLiteral("-30"), QStringLiteral("-∞")};
    return labelled.contains(mark.label);
}

bool isUnity(const FaderTrackView::Mark& mark) { return mark.label == QLatin1String("+0"); }

QColor plotColor(const Look& look) {
    return look.isDark() ? look.tints.displayBackground : blend(look.palette.appBackground, Qt::white, 0.75);
}
QColor curveColor(const Look& look) { return look.isDark() ? look.tints.display : look.tints.warning; }

/// Shades the time outside the pass.
void shadeOutside(Canvas& canvas, const QRect& plot, const PassLanes& lanes, const LaneTimeline& timeline) {
    const int start = std::clamp(canvas.px(plot.x() + std::clamp(timeline.xOf(0), -1e6, 1e6)), canvas.px(plot.x()),
                                 canvas.px(plot.x() + plot.width()));
    const int end =
        std::clamp(canvas.px(plot.x() + std::clamp(timeline.xOf(double(lanes.lastOffset() + 1)), -1e6, 1e6)),
                   canvas.px(plot.x()), canvas.px(plot.x() + plot.width()));
    const QRect whole = canvas.px(QRectF(plot));
    const QColor shade = withAlpha(Qt::black, canvas.look.isDark() ? 0.45 : 0.07);
    canvas.painter.fillRect(QRect(whole.x(), whole.y(), start - whole.x(), whole.height()), shade);
    canvas.painter.fillRect(QRect(end, whole.y(), whole.right() + 1 - end, whole.height()), shade);
}

/// Calls `visit(x, offset)` for every ruler label that touches `width`.
template <typename Visit>
void forLabels(const LaneTimeline& timeline, double width, Visit visit) {
    const std::int64_t step = timeline.labelStep();
    const std::int64_t zero = timeline.start.totalFrames();
    const auto first = std::int64_t(std::floor((timeline.firstOffset + double(zero)) / double(step))) - 1;
    for (std::int64_t i = first;; ++i) {
        const std::int64_t offset = i * step - zero;
        const double x = timeline.xOf(double(offset));
        if (x > width) return;
        visit(x, offset);
    }
}

/// What lanes with the same number of switches share, drawn once per size.
void paintFace(Canvas& canvas, const QRect& lane) {
    const Look& look = canvas.look;
    Parts::modulePanel(canvas.painter, canvas.px(QRectF(lane.adjusted(0, 0, 0, -laneGap))), canvas.scale,
                       look.palette.appBackground, look);
    const QRect plot = plotRect(lane);
    const QRect curve = LanePainter::curveRect(lane);
    Parts::recess(canvas.painter, canvas.px(QRectF(plot)), canvas.scale, plotColor(look), 3 * canvas.scale, look);
    const QRect inside = canvas.px(QRectF(insidePlot(plot)));
    for (const FaderTrackView::Mark& mark : FaderTrackView::scale()) {
        if (!isLabelled(mark)) continue;
        const double y = curveY(curve, mark.fraction * maxFader);
        canvas.painter.fillRect(QRect(inside.x(), canvas.px(y), inside.width(), canvas.line()),
                                withAlpha(look.tints.text, isUnity(mark) ? 0.22 : 0.09));
        Type::draw(canvas.painter, canvas.px(QRectF(lane.x(), y - 5, LanePainter::headWidth - scaleGap, 10)),
                   Qt::AlignRight, Type::typeset(mark.label),
                   Type::font(9 * canvas.scale, isUnity(mark) ? QFont::Bold : QFont::Medium),
                   isUnity(mark) ? look.tints.scaleZero : look.tints.legend);
    }
}

void paintTimeGrid(Canvas& canvas, const QRect& plot, const LaneTimeline& timeline) {
    const QRect whole = canvas.px(QRectF(plot));
    forLabels(timeline, plot.width(), [&](double x, std::int64_t) {
        canvas.painter.fillRect(QRect(canvas.px(plot.x() + x), whole.y(), canvas.line(), whole.height()),
                                withAlpha(canvas.look.tints.text, 0.07));
    });
}

/// Device columns with equal values are drawn as one.
template <typename Value, typename Draw>
class Runs {
public:
    explicit Runs(Draw draw) : _draw(draw) {}
    ~Runs() { end(); }
    void add(int column, const Value& value) {
        if (_value && *_value == value && _end == column) {
            ++_end;
            return;
        }
        end();
        _value = value;
        _begin = column;
        _end = column + 1;
    }

private:
    void end() {
        if (_value) _draw(_begin, _end - _begin, *_value);
    }

    Draw _draw;
    std::optional<Value> _value;
    int _begin = 0, _end = 0;
};

/// Drawn pixel by pixel: a rectangle for each column is several times slower.
void paintCurve(Canvas& canvas, const QRect& plot, const QRect& curve, const PassLanes& lanes,
                const PassLanes::Channel& channel, const LaneTimeline& timeline) {
    const QRect whole = canvas.px(QRectF(plot));
    const int height = canvas.px(curve.bottom() + 1) - whole.y();
    const int thickness = canvas.line(1.5);
    const Look& look = canvas.look;
    const QColor color = channel.fader ? curveColor(look) : blend(curveColor(look), plotColor(look), 0.5);
    std::vector<QRgb> shade(std::size_t(height), 0u); // below the curve, paler from the top down
    for (int y = 0; y < height; ++y)
        shade[std::size_t(y)] = qPremultiply(withAlpha(color, 0.34 - 0.28 * y / height).rgba());
    std::array<int, 128> tops{};
    for (std::size_t value = 0; value < tops.size(); ++value)
        tops[value] = canvas.px(curveY(curve, double(value))) - thickness / 2 - whole.y();

    QImage image(whole.width(), height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    auto* pixels = reinterpret_cast<QRgb*>(image.bits());
    const auto stride = std::size_t(image.bytesPerLine()) / sizeof(QRgb);
    const QRgb stroke = color.rgba();
    lanes.visitColumns(
        MIDIChannelMapping::faderCC(channel.kind), timeline.firstOffset, timeline.framesPerPixel / canvas.scale,
        whole.width(), [&](int column, const PassLanes::Extent& extent) {
            const int low = tops[extent.low] + thickness;
            for (int y = std::max(0, tops[extent.high]); y < height; ++y)
                pixels[std::size_t(y) * stride + std::size_t(column)] = y < low ? stroke : shade[std::size_t(y)];
        });
    canvas.painter.drawImage(whole.topLeft(), image);
}

void paintSwitch(Canvas& canvas, const QRect& row, const PassLanes& lanes, const PassLanes::Channel& channel,
                 const LaneSwitch& which, const LaneTimeline& timeline) {
    const QRect whole = canvas.px(QRectF(row.x(), row.y() + (switchPitch - barHeight) / 2.0, row.width(), barHeight));
    const QColor color = canvas.look.tints.*which.color;
    canvas.painter.fillRect(QRect(whole.x(), whole.center().y(), whole.width(), canvas.line()),
                            withAlpha(canvas.look.tints.text, 0.14));
    const auto draw = [&](int column, int count, bool isOn) {
        if (!isOn) return;
        const int width = std::max(count, canvas.line(2));
        const QRect bar(whole.x() + std::min(column, whole.width() - width), whole.y(), width, whole.height());
        canvas.painter.fillRect(bar, color);
        canvas.painter.fillRect(bar.adjusted(0, 0, 0, canvas.line() - bar.height()), blend(color, Qt::white, 0.35));
        canvas.painter.fillRect(bar.adjusted(0, bar.height() - canvas.line(2), 0, 0), blend(color, Qt::black, 0.3));
    };
    Runs<bool, decltype(draw)> runs(draw);
    lanes.visitColumns(MIDIChannelMapping::switchCC(channel.kind), timeline.firstOffset,
                       timeline.framesPerPixel / canvas.scale, whole.width(),
                       [&](int column, const PassLanes::Extent& extent) {
                           runs.add(column, MIDIChannelMapping::decodeSwitchByte(extent.common).*which.member);
                       });
}

void paintHead(Canvas& canvas, const QRect& lane, const PassLanes::Channel& channel,
               const std::optional<ChannelLabel>& label) {
    const Look& look = canvas.look;
    const QRect head(lane.x() + plotMargin, lane.y() + plotMargin, LanePainter::headWidth - plotMargin,
                     lane.height() - laneGap - 2 * plotMargin);
    const int left = head.x() + headPadding;
    Type::draw(canvas.painter, canvas.px(QRectF(left, head.y() + 8, 60, 16)), Qt::AlignLeft, channel.kind.displayName(),
               Type::font(15 * canvas.scale, QFont::DemiBold), look.tints.text);
    int y = head.y() + 30;
    if (label && !label->name.isEmpty()) {
        ScribbleStrip().paintMoving(canvas, QRect(left, y, 80, 18), {.value = ScribbleStrip::value(label)});
        y += 26;
    }
    Type::draw(canvas.painter, canvas.px(QRectF(left, y, 90, 10)), Qt::AlignLeft,
               channel.events == 1 ? QStringLiteral("1 event") : QStringLiteral("%1 events").arg(channel.events),
               Type::font(9 * canvas.scale, QFont::Medium), look.tints.secondaryText);

    double rowMiddle = LanePainter::curveRect(lane).bottom() + 1 + switchesTop + switchPitch / 2.0;
    for (const LaneSwitch& each : laneSwitches) {
        if (!(channel.switches.*each.member)) continue;
        Type::draw(canvas.painter, canvas.px(QRectF(lane.x(), rowMiddle - 5, LanePainter::headWidth - scaleGap, 10)),
                   Qt::AlignRight, QLatin1String(each.name),
                   Type::font(8 * canvas.scale, QFont::DemiBold, 0.3 * canvas.scale), look.tints.legend);
        rowMiddle += switchPitch;
    }
}

} // namespace

std::int64_t LaneTimeline::labelStep() const {
    const std::int64_t fps = framesPerSecond(start.frameRate);
    const double wanted = labelWidth * framesPerPixel;
    for (const std::int64_t frames : {1, 2, 5, 10})
        if (double(frames) >= wanted) return frames;
    for (const std::int64_t seconds : {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800})
        if (double(seconds * fps) >= wanted) return seconds * fps;
    std::int64_t hours = 1;
    while (double(hours * 3600 * fps) < wanted)
        hours *= 2;
    return hours * 3600 * fps;
}

int LanePainter::laneHeight(const PassLanes::Channel& channel) {
    const int switches = switchCount(channel);
    return laneGap + 2 * plotMargin + curveHeight + (switches > 0 ? 2 * switchesTop + switches * switchPitch : 0);
}

QRect LanePainter::curveRect(const QRect& lane) {
    const QRect plot = plotRect(lane);
    return {plot.x(), plot.y(), plot.width(), curveHeight};
}

void LanePainter::paintRuler(Canvas& canvas, DrawingContext& drawing, const QRect& ruler,
                             const LaneTimeline& timeline) {
    const QRect whole = canvas.px(QRectF(ruler));
    static const int metal = 0; // names the layer
    canvas.painter.drawPixmap(whole.topLeft(), drawing.layer(&metal, whole.size(), [&](QPainter& painter) {
        Parts::aluminium(painter, QRect(QPoint(), whole.size()), canvas.scale, canvas.look);
    }));
    const QColor ink = canvas.look.tints.aluminiumPrint;
    const int thickness = canvas.line();
    const auto tick = [&](double x, int length) {
        const int at = canvas.px(ruler.x() + x);
        if (at < whole.x() || at > whole.right()) return;
        canvas.painter.fillRect(QRect(at, whole.bottom() - canvas.px(length), thickness, canvas.px(length)), ink);
        canvas.painter.fillRect(QRect(at + thickness, whole.bottom() - canvas.px(length), thickness, canvas.px(length)),
                                withAlpha(Qt::white, 0.35));
    };
    const std::int64_t step = timeline.labelStep();
    const int parts = step % 5 == 0 ? 5 : step % 4 == 0 ? 4 : step % 2 == 0 ? 2 : 1;
    canvas.painter.save();
    canvas.painter.setClipRect(whole);
    forLabels(timeline, ruler.width(), [&](double x, std::int64_t offset) {
        for (int part = 0; part < parts; ++part)
            tick(x + part * double(step) / parts / timeline.framesPerPixel, part == 0 ? 10 : 5);
        TimecodePosition position = timeline.start;
        const QRect print(int(ruler.x() + x) + 4, ruler.y() + 2, rulerTextWidth, 17);
        if (position.totalFrames() + offset < 0 || print.x() < ruler.x() || print.right() > ruler.right()) return;
        position.addFrames(offset);
        TimecodeText::draw(canvas, canvas.px(QRectF(print)), position.withinDay().displayString(), 11, ink);
    });
    canvas.painter.restore();
}

void LanePainter::paintLane(Canvas& canvas, DrawingContext& drawing, const QRect& lane, const PassLanes& lanes,
                            const PassLanes::Channel& channel, const std::optional<ChannelLabel>& label,
                            const LaneTimeline& timeline) {
    static const std::array<char, laneSwitches.size() + 1> faces{}; // their addresses name the layers
    const QSize size = canvas.px(QRectF(QPointF(), lane.size())).size();
    canvas.painter.drawPixmap(canvas.px(QPointF(lane.topLeft())),
                              drawing.layer(&faces[std::size_t(switchCount(channel))], size, [&](QPainter& painter) {
                                  Canvas face(painter, canvas.scale, canvas.look, drawing);
                                  paintFace(face, QRect(QPoint(), lane.size()));
                              }));
    paintHead(canvas, lane, channel, label);

    const QRect curve = curveRect(lane);
    const QRect inside = insidePlot(plotRect(lane));
    LaneTimeline shown = timeline;
    shown.firstOffset = timeline.offsetAt(inside.x() - curve.x());
    canvas.painter.save();
    canvas.painter.setClipRect(canvas.px(QRectF(inside)));
    paintTimeGrid(canvas, inside, shown);
    paintCurve(canvas, inside, curve, lanes, channel, shown);
    QRect row(inside.x(), curve.bottom() + 1 + switchesTop, inside.width(), switchPitch);
    for (const LaneSwitch& each : laneSwitches) {
        if (!(channel.switches.*each.member)) continue;
        paintSwitch(canvas, row, lanes, channel, each, shown);
        row.translate(0, switchPitch);
    }
    shadeOutside(canvas, inside, lanes, shown);
    canvas.painter.restore();
}

} // namespace tessik
