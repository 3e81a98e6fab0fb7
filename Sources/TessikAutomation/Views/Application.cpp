#include "TessikAutomation/Views/Application.h"

#include "TessikAutomation/Persistence/StartupRestore.h"

#include <QLoggingCategory>
#include <QScreen>

namespace tessik {

namespace {

Q_LOGGING_CATEGORY(startup, "tessik.startup", QtWarningMsg)

/// Logs when a window has been painted for the first time, for measuring how long that took.
class FirstFrameNotice final : public QObject {
public:
    explicit FirstFrameNotice(QWidget* window) : QObject(window) { window->installEventFilter(this); }
    bool eventFilter(QObject* window, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            window->removeEventFilter(this);
            QMetaObject::invokeMethod(
                this, [] { qCDebug(startup, "first frame painted"); }, Qt::QueuedConnection);
        }
        return false;
    }
};

template <typename Ports>
std::optional<std::int32_t> portNamed(const Ports& ports, const QString& name) {
    for (const MIDIPortInfo& port : ports)
        if (port.name == name) return port.uniqueID;
    return std::nullopt;
}

} // namespace

Application::Application(MIDIService& service)
    : midiOutput(service),
      midiManager(service, consoleModel, QStringLiteral("TessikAutomation")),
      deskEditor(midiOutput),
      window({theme, consoleModel, midiManager, midiOutput, deskEditor}) {
    midiOutput.setupClient();
    midiOutput.refreshDestinations();
    if (const auto rate = SavedSettings::midiOutMessagesPerSecond()) midiOutput.setMessagesPerSecond(*rate);
    restoreModelSize(consoleModel);

    midiManager.onControlChange = [this](Uptime stamp, int cc, int value) {
        midiOutput.noteReceived(stamp, cc, value);
    };
    _dataLost = midiManager.connection.dataLostCount.addNotifier([this] {
        window.showBanner(QStringLiteral("MIDI In dropped messages: the screen and the desk may differ. Recall a scene "
                                         "on the desk to hear every value again."));
    });
}

Application::~Application() = default;

void Application::restorePorts() { restoreMIDIConnections(midiManager.connection, midiOutput); }

void Application::connectToRig() {
    const QString desk = SimulatedConsole::portName();
    midiManager.connection.selectSource(portNamed(midiManager.connection.availableSources.value(), desk));
    midiOutput.selectDestination(portNamed(midiOutput.port.availableDestinations.value(), desk));
}

void Application::offerRig(const QString& why, std::function<void()> accept) {
    window.showBanner(QStringLiteral("There is no MIDI on this machine: %1").arg(why),
                      QStringLiteral("Try it with the rig"), std::move(accept));
}

void Application::showWindow() {
    new FirstFrameNotice(&window);
    window.setGeometry(window.screen()->availableGeometry().adjusted(80, 80, -80, -80));
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace tessik
