#include "TessikAutomation/Application/Application.h"
#include "TessikAutomation/Application/CommandLine.h"
#include "TessikAutomation/Application/EndSignals.h"
#include "TessikAutomation/Session/SessionCheck.h"
#include "TessikAutomation/Tour/Tour.h"
#include "TessikAutomation/Views/RigPane.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"
#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"

#include <QApplication>
#include <QIcon>
#include <QSessionManager>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

using namespace tessik;

namespace {

/// The program as seen by the desktop.
class Program final : public QApplication {
public:
    using QApplication::QApplication;

    /// The desktop session, or another program on its behalf, wants this one to end.
    std::function<void()> onQuitWanted;

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::Quit || !onQuitWanted) return QApplication::event(event);
        onQuitWanted();
        return true;
    }
};

/// Starts everything again, on the rig, within this process.
constexpr int restartWithRig = 1000;

int runTour(const CommandLine& line) {
    const QTemporaryDir own; // a tour must not touch the user's own settings and recovery files
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, own.path());
    const QString crashRoot = qEnvironmentVariable(Tour::crashVariable);
    const QString recoveryRoot = crashRoot.isEmpty() ? own.path() : crashRoot;
    Rig rig;
    Application application(rig.service, recoveryRoot);
    if (crashRoot.isEmpty()) return Tour(application, rig, line.tourFolder, recoveryRoot).run();
    Tour(application, rig, own.path(), recoveryRoot).crash();
}

/// What every start does once the ports exist. Its questions appear within the event loop, which a signal ends.
int begin(Program& program, Application& application, const CommandLine& line) {
    const EndSignals signals([&application](int signal) { application.leave(128 + signal); });
    program.onQuitWanted = [&application] { application.leave(0); };
    QObject::connect(
        &program, &QGuiApplication::commitDataRequest, &application.window,
        [&application] { application.session.keepUnsaved(); }, // nothing more: the desktop may yet stay
        Qt::DirectConnection);
    application.showWindow();
    QMetaObject::invokeMethod(
        &application.window,
        [&application, &line] {
            application.begin(line.sessionFile);
            if (!line.rig) application.welcome();
        },
        Qt::QueuedConnection);
    const int status = QApplication::exec();
    program.onQuitWanted = nullptr;
    return status;
}

int runOnRig(Program& program, const CommandLine& line) {
    Rig rig;
    Application application(rig.service, RecoveryFolder::defaultRoot());
    auto* pane = new RigPane(rig.desk, application.window);
    application.viewMenu().addAction(pane->toggleViewAction());
    application.connectToRig();
    return begin(program, application, line);
}

int runOnSequencer(Program& program, const CommandLine& line) {
    ALSAMIDIService service;
    Application application(service, RecoveryFolder::defaultRoot());
    application.restorePorts();
    application.onRigWanted = [&application] {
        if (application.session.prepareToQuit()) QApplication::exit(restartWithRig);
    };
    if (const auto problem = ALSAMIDIService::problem()) application.problems.noMIDI = *problem;
    return begin(program, application, line);
}

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const CommandLine line = CommandLine::parse(arguments);
    if (line.ending) {
        std::fputs(qUtf8Printable(line.ending->text), line.ending->isError ? stderr : stdout);
        return line.ending->exitStatus;
    }
    if (!line.checkFile.isEmpty()) {
        const SessionCheckResult result = checkSession(line.checkFile);
        std::fputs(qUtf8Printable(result.text), result.exitCode == 2 ? stderr : stdout);
        return result.exitCode;
    }
    MIDIManager::logIncomingCC = line.logCC;

    Q_INIT_RESOURCE(icons);
    Program program(argc, argv);
    AppStyle::install();
    QApplication::setApplicationName(QStringLiteral("tessik-automation"));
    QApplication::setApplicationVersion(QLatin1String(TESSIK_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tessik-automation"));
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("tessik-automation"), QIcon(QStringLiteral(":/icons/tessik-automation.svg"))));
    if (!line.tourFolder.isEmpty()) return runTour(line);
    const int status = line.rig ? runOnRig(program, line) : runOnSequencer(program, line);
    return status == restartWithRig ? runOnRig(program, line) : status;
}
