#include "TessikAutomation/Views/Window/StatusView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Persistence/PortChoice.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QMouseEvent>

namespace tessik {

StatusView::StatusView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent), _objects(objects), _drawing(drawing) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setHelpContext(*this, HelpContext::settings);
    setCursor(Qt::PointingHandCursor);
    const auto changed = [this] { showStatus(); };
    MIDIInputConnection& input = objects.midiManager.connection;
    MIDIDestinationPort& output = objects.midiOutput.port;
    _observers.push_back(input.statusText.addNotifier(changed));
    _observers.push_back(input.availableSources.addNotifier(changed));
    _observers.push_back(output.statusText.addNotifier(changed));
    _observers.push_back(output.availableDestinations.addNotifier(changed));
    _observers.push_back(drawing.look.addNotifier([this] { update(); }));
    showStatus();
}

std::array<StatusView::Path, 2> StatusView::paths() const {
    const auto path = [](const QString& label, const QString& status, const PortChoice& choice) {
        const std::optional<std::int32_t> id = choice.selected.value();
        return Path{label + QStringLiteral(" — ") + status, id.has_value(), id && choice.isListed(*id)};
    };
    MIDIInputConnection& input = _objects.midiManager.connection;
    MIDIDestinationPort& output = _objects.midiOutput.port;
    return {path(QStringLiteral("MIDI In"), input.statusText, sourceChoice(SavedSettings::Key::consoleSourceID, input)),
            path(QStringLiteral("MIDI Out"), output.statusText,
                 destinationChoice(SavedSettings::Key::midiOutDestinationID, output))};
}

void StatusView::showStatus() {
    const auto [in, out] = paths();
    setAccessibleName(in.text + QStringLiteral("; ") + out.text);
    setToolTip(in.text + QLatin1Char('\n') + out.text);
    update();
}

void StatusView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    painter.fillRect(canvas.px(QRectF(rect())), look.railColor());
    const QFont font = Type::font(10 * canvas.scale, QFont::Medium);
    const QFontMetrics metrics(font);
    const int half = canvas.px(width()) / 2;
    int x = canvas.px(8);
    for (const Path& path : paths()) {
        const int side = canvas.px(6);
        const QRect lamp(x, (canvas.px(height()) - side) / 2, side, side);
        const QColor color = path.connected ? look.tints.ledGreen : look.tints.ledAmber;
        Parts::lamp(painter, lamp, canvas.scale, color, path.chosen);
        const QRect line(lamp.right() + canvas.px(7), 0, half - canvas.px(30), canvas.px(height()));
        Type::draw(painter, line, Qt::AlignLeft, metrics.elidedText(path.text, Qt::ElideRight, line.width()), font,
                   look.tints.secondaryText);
        x += half;
    }
}

void StatusView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) Q_EMIT clicked();
}

} // namespace tessik
