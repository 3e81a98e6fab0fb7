// From a click on play to the first instant at which the window knows where the tape is, on the rig.
#include "Bench.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"
#include "TessikAutomation/Views/Transport/TransportPanelView.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedRecorder.h"

#include <QApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QUndoStack>

#include <algorithm>

namespace tessik::bench {
namespace {

using namespace std::chrono_literals;

void click(QWidget& widget) {
    const QPointF centre = QRectF(widget.rect()).center();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool pressed = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, centre, widget.mapToGlobal(centre), Qt::LeftButton,
                          pressed ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

const Benchmark mmcToRoll("mmc_to_roll_ms", [](const Report& report) {
    const UptimeClock& uptime = UptimeClock::system();
    VirtualMIDIService service;
    SimulatedRecorder recorder(service, {.rate = MTCFrameRate::fps25});
    MTCClock clock(service, QStringLiteral("Bench Timecode"));
    LocatorStore locators;
    TransportManager transport(service);
    clock.connection.selectSource(service.sources().front().uniqueID);
    transport.selectDestination(service.destinations().front().uniqueID);
    QUndoStack history;
    TransportPanelView panel(clock, locators, transport, history, [] { return std::nullopt; });
    const auto keys = panel.findChildren<PanelButton*>();
    const auto play = std::find_if(keys.begin(), keys.end(), [](const PanelButton* key) {
        return key->accessibleName() == QLatin1String("Play");
    });
    panel.show();

    std::vector<double> milliseconds;
    for (int round = 0; round < 20; ++round) {
        recorder.locate({.hours = 1, .frames = round % 2}); // a machine parks on odd frames too
        QEventLoop loop;
        bool locked = false;
        const auto running = clock.isRunning.addNotifier([&] {
            locked = clock.isRunning.value() && clock.frame(uptime.now());
            if (locked) loop.quit();
        });
        QTimer::singleShot(2s, &loop, &QEventLoop::quit);
        const Uptime clicked = uptime.now();
        click(**play);
        loop.exec();
        if (!locked) qFatal("the rig's recorder was started and no timecode came");
        milliseconds.push_back(double((uptime.now() - clicked).count()) / 1e6);
        recorder.stop();
        const auto stopped = clock.isRunning.addNotifier([&] { loop.quit(); });
        loop.exec();
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    report({"mmc_to_roll_ms.25fps.median", milliseconds[milliseconds.size() / 2], "ms", std::nullopt});
    report({"mmc_to_roll_ms.25fps.worst", milliseconds.back(), "ms", std::nullopt});
});

} // namespace
} // namespace tessik::bench
