#include "TessikAutomation/Views/Window/StatusView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/MIDI/PortChoice.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/SVGSymbol.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QMouseEvent>

#include <cmath>

namespace tessik {
namespace {

constexpr int besideText = 30; // the lamp, and margins

QFont textFont(qreal scale) { return Type::font(10 * scale, QFont::Medium); }
/// In pixels at that scale, including what stands beside it.
int widthOf(const QString& text, qreal scale) {
    return int(std::ceil(QFontMetricsF(textFont(scale)).horizontalAdvance(text) + besideText * scale)) + 1;
}

} // namespace

StatusView::StatusView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent), _objects(objects), _drawing(drawing) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setHelpContext(*this, HelpContext::settings);
    setCursor(Qt::PointingHandCursor);
    const auto changed = [this] { showStatus(); };
    MIDIInputConnection& input = objects.desk.input.connection;
    MIDIDestinationPort& output = objects.desk.output.port;
    _observers.push_back(input.statusText.addNotifier(changed));
    _observers.push_back(input.availableSources.addNotifier(changed));
    _observers.push_back(output.statusText.addNotifier(changed));
    _observers.push_back(output.availableDestinations.addNotifier(changed));
    for (PortCable* cable : {&input.cable, &output.cable}) {
        _observers.push_back(cable->refusal.addNotifier(changed));
        _observers.push_back(cable->isCut.addNotifier(changed));
    }
    _observers.push_back(SavedSettings::lastWrite().addNotifier(changed)); // a port may have been chosen once more
    _observers.push_back(drawing.look.addNotifier([this] { update(); }));
    showStatus();
}

std::array<StatusView::Path, 2> StatusView::paths() const {
    const auto path = [](const QString& label, const QString& status, const PortChoice& choice,
                         const PortCable& cable) {
        const std::optional<std::int32_t> id = choice.selected.value();
        const bool isSound =
            cable.refusal.value() == 0 && !cable.isCut.value() && !choice.isAmbiguous() && !choice.isAnotherDevice();
        return Path{label + QStringLiteral(" — ") + status, id.has_value(), id && choice.isListed(*id), isSound};
    };
    MIDIInputConnection& input = _objects.desk.input.connection;
    MIDIDestinationPort& output = _objects.desk.output.port;
    return {path(QStringLiteral("MIDI In"), input.statusText, sourceChoice(SavedSettings::Key::consoleSourceID, input),
                 input.cable),
            path(QStringLiteral("MIDI Out"), output.statusText,
                 destinationChoice(SavedSettings::Key::midiOutDestinationID, output), output.cable)};
}

void StatusView::showStatus() {
    const auto [in, out] = paths();
    const auto told = [](const Path& path) {
        return path.isSound ? path.text : path.text + QStringLiteral(" (see the problems)");
    };
    setAccessibleName(told(in) + QStringLiteral("; ") + told(out));
    setToolTip(told(in) + QLatin1Char('\n') + told(out));
    updateGeometry();
    update();
}

QSize StatusView::sizeHint() const {
    int both = 0;
    for (const Path& path : paths())
        both += widthOf(path.text, 1);
    return {both, Metrics::railHeight};
}

void StatusView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    static const Symbol triangle = symbolNamed(QStringLiteral("warning"));
    painter.fillRect(canvas.px(QRectF(rect())), look.railColor());
    const QFont font = textFont(canvas.scale);
    const QFontMetrics metrics(font);
    const auto [in, out] = paths();
    // Half of the room each, unless one needs more and the other can spare it.
    const int room = canvas.px(width());
    const int least = widthOf(in.text, canvas.scale);
    const int most = room - widthOf(out.text, canvas.scale);
    const int first = least <= most ? std::clamp(room / 2, least, most) : room / 2;
    int x = canvas.px(8);
    for (const auto& [path, share] : {std::pair(in, first), std::pair(out, room - first)}) {
        const int side = canvas.px(6);
        const QRect lamp(x, (canvas.px(height()) - side) / 2, side, side);
        const QColor color = path.connected ? look.tints.ledGreen : look.tints.ledAmber;
        if (path.isSound)
            Parts::lamp(painter, lamp, canvas.scale, color, path.chosen);
        else
            triangle(painter, QRectF(lamp).adjusted(-side / 2.0, -side / 2.0, side / 2.0, side / 2.0),
                     look.tints.warning);
        const QRect line(lamp.right() + canvas.px(7), 0, share - canvas.px(besideText), canvas.px(height()));
        Type::draw(painter, line, Qt::AlignLeft, metrics.elidedText(path.text, Qt::ElideRight, line.width()), font,
                   look.tints.secondaryText);
        x += share;
    }
}

void StatusView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) Q_EMIT clicked();
}

} // namespace tessik
