#include "TessikAutomation/Views/Window/HeaderTools.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Window/ActivityLamp.h"

namespace tessik {
namespace {

constexpr int edge = 4;
constexpr int gap = 2;

} // namespace

HeaderTools::HeaderTools(const AppObjects& objects, DrawingContext& drawing, QWidget* parent)
    : HeaderPart(parent),
      _settings(new PanelButton(QStringLiteral("SETTINGS"), symbolNamed(QStringLiteral("gear")), drawing, this)) {
    const auto addLamp = [&](const QString& legend, const QString& path, auto& count, auto& status) {
        auto* lamp = new ActivityLamp(legend, drawing, this);
        lamp->setAccessibleName(path + QStringLiteral(" activity"));
        setHelpContext(*lamp, HelpContext::settings);
        const auto name = [lamp, path, &status] {
            lamp->setToolTip(
                QStringLiteral("%1 — %2\nLights while messages pass, whatever they say").arg(path, status.value()));
        };
        name();
        _observers.push_back(status.addNotifier(name));
        _observers.push_back(count.addNotifier([lamp] { lamp->flash(); }));
        return lamp;
    };
    MIDIInputConnection& input = objects.desk.input.connection;
    MIDIDestinationPort& output = objects.desk.output.port;
    _in = addLamp(QStringLiteral("IN"), QStringLiteral("MIDI In"), input.rawPacketListCount, input.statusText);
    _out = addLamp(QStringLiteral("OUT"), QStringLiteral("MIDI Out"), output.sentCount, output.statusText);
    _settings->setToolTip(QStringLiteral("Settings  (Ctrl+,)"));
    setFit(HeaderFit::legends);
}

int HeaderTools::neededWidth(HeaderFit fit) const {
    const int lamps = fit == HeaderFit::symbols ? _out->width() : _in->width() + gap + _out->width();
    return Metrics::toGridUp(std::max(lamps, PanelButton::widthOf(fit != HeaderFit::symbols)));
}

/// The lamps stand side by side or, in a narrow header, one above the other.
void HeaderTools::setFit(HeaderFit fit) {
    const int width = neededWidth(fit);
    const bool isNarrow = fit == HeaderFit::symbols;
    _in->move(isNarrow ? width - _in->width() : 0, edge);
    _out->move(width - _out->width(), isNarrow ? edge + _in->height() : edge);
    const int top = _out->geometry().bottom() + 1 + gap;
    _settings->setLegendVisible(!isNarrow);
    const int keyWidth = PanelButton::widthOf(!isNarrow);
    _settings->setGeometry(width - keyWidth, top, keyWidth, Metrics::headerHeight - top - edge);
    setFixedSize(width, Metrics::headerHeight);
}

} // namespace tessik
