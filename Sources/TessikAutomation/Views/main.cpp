#include "TessikAutomation/Session/SessionCheck.h"
#include "TessikAutomation/Views/Application.h"
#include "TessikAutomation/Views/CommandLine.h"
#include "TessikAutomation/Views/RigWindow.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"
#include "TessikAutomation/Views/Tour/Tour.h"
#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

using namespace tessik;

namespace {

/// Another start of everything, on the rig, within this process.
constexpr int restartWithRig = 1000;

int runTour(const CommandLine& line) {
    const QTemporaryDir own; // a tour leaves the user's own settings and recovery files alone
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, own.path());
    const QString crashRoot = qEnvironmentVariable(Tour::crashVariable);
    const QString recoveryRoot = crashRoot.isEmpty() ? own.path() : crashRoot;
    Rig rig;
    Application application(rig.service, recoveryRoot);
    if (crashRoot.isEmpty()) return Tour(application, rig, line.tourFolder, recoveryRoot).run();
    Tour(application, rig, own.path(), recoveryRoot).crash();
}

/// What every start does once the window is there.
int begin(Application& application, const CommandLine& line) {
    application.showWindow();
    application.session.offerRecovery();
    if (!line.sessionFile.isEmpty())
        application.session.open(QUrl::fromLocalFile(QFileInfo(line.sessionFile).absoluteFilePath()));
    if (!line.rig) application.welcome();
    return QApplication::exec();
}

int runOnRig(const CommandLine& line) {
    Rig rig;
    Application application(rig.service, recoveryFolder());
    RigWindow rigWindow(rig.desk, &application.window);
    application.viewMenu().addAction(QStringLiteral("&Rig Console"), &rigWindow, &RigWindow::present);
    application.connectToRig();
    QMetaObject::invokeMethod(&rigWindow, &RigWindow::present, Qt::QueuedConnection); // once the program's is there
    return begin(application, line);
}

int runOnSequencer(const CommandLine& line) {
    ALSAMIDIService service;
    Application application(service, recoveryFolder());
    application.restorePorts();
    application.onRigWanted = [&application] {
        if (application.session.prepareToQuit()) QApplication::exit(restartWithRig);
    };
    if (const auto problem = ALSAMIDIService::problem()) application.problems.noMIDI = *problem;
    return begin(application, line);
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
    QApplication app(argc, argv);
    AppStyle::install();
    QApplication::setApplicationName(QStringLiteral("tessik-automation"));
    QApplication::setApplicationDisplayName(QStringLiteral("TessikAutomation"));
    QApplication::setApplicationVersion(QLatin1String(TESSIK_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tessik-automation"));
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("tessik-automation"), QIcon(QStringLiteral(":/icons/tessik-automation.svg"))));
    if (!line.tourFolder.isEmpty()) return runTour(line);
    const int status = line.rig ? runOnRig(line) : runOnSequencer(line);
    return status == restartWithRig ? runOnRig(line) : status;
}
