#include "TessikAutomation/Session/SessionCheck.h"
#include "TessikAutomation/Views/Application.h"
#include "TessikAutomation/Views/CommandLine.h"
#include "TessikAutomation/Views/RigWindow.h"
#include "TessikAutomation/Views/Tour.h"
#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

using namespace tessik;

namespace {

/// Another start of everything, on the rig, within this process.
constexpr int restartWithRig = 1000;

int runTour(const CommandLine& line) {
    const QTemporaryDir settings; // a tour leaves the user's own settings alone
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    Rig rig;
    Application application(rig.service);
    return Tour(application, rig, line.tourFolder).run();
}

int runOnRig() {
    Rig rig;
    Application application(rig.service);
    RigWindow rigWindow(rig.desk);
    application.connectToRig();
    application.showWindow();
    rigWindow.show();
    return QApplication::exec();
}

int runOnSequencer() {
    ALSAMIDIService service;
    Application application(service);
    application.restorePorts();
    application.showWindow();
    if (const auto problem = ALSAMIDIService::problem())
        application.offerRig(*problem, [] { QApplication::exit(restartWithRig); });
    return QApplication::exec();
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

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tessik-automation"));
    QApplication::setApplicationDisplayName(QStringLiteral("TessikAutomation"));
    QApplication::setApplicationVersion(QLatin1String(TESSIK_VERSION));
    if (!line.tourFolder.isEmpty()) return runTour(line);
    const int status = line.rig ? runOnRig() : runOnSequencer();
    return status == restartWithRig ? runOnRig() : status;
}
