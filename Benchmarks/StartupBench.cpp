// From the start of the process to the first painted window, and what memory that took.
#include "Bench.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <vector>

namespace tessik::bench {
namespace {

const Benchmark firstFrame("first_frame_ms", [](const Report& report) {
    // A screen on which the window comes to 1600 by 900.
    const QTemporaryDir folder;
    QFile screen(folder.filePath(QStringLiteral("screen.json")));
    if (!screen.open(QIODevice::WriteOnly)) return;
    screen.write(R"({"screens": [{"name": "one", "x": 0, "y": 0, "width": 1760, "height": 1060,
                                  "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screen.close();
    std::vector<double> times;
    double memory = 0;
    for (int run = 0; run < 9; ++run) {
        const QTemporaryDir home;
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("tessik.startup.debug=true"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
        environment.insert(QStringLiteral("XDG_STATE_HOME"), home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"),
                           QStringLiteral("offscreen:configfile=") + screen.fileName());
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        QElapsedTimer timer;
        timer.start();
        program.start(QCoreApplication::applicationDirPath() + QStringLiteral("/tessik-automation"), QStringList());
        QByteArray output;
        while (!output.contains("first frame painted") && program.waitForReadyRead(10'000))
            output += program.readAll();
        times.push_back(output.contains("first frame painted") ? double(timer.nsecsElapsed()) / 1e6 : 1e9);
        QFile status(QStringLiteral("/proc/%1/statm").arg(program.processId()));
        if (status.open(QIODevice::ReadOnly)) memory = status.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
        program.kill();
        program.waitForFinished();
    }
    std::sort(times.begin(), times.end());
    report({"first_frame_ms", times[times.size() / 2], "ms", 200});
    report({"first_frame_memory_mb", memory, "MB", 70});
});

} // namespace
} // namespace tessik::bench
