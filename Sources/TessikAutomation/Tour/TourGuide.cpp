#include "TessikAutomation/Tour/TourGuide.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QSaveFile>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace tessik {

TourGuide::TourGuide(QString folder) : _folder(std::move(folder)) {
    const QDir directory(_folder);
    _usable = directory.mkpath(QStringLiteral("."));
    for (const QString& old : directory.entryList({QStringLiteral("[0-9][0-9]-*.png"), QStringLiteral("report.md")}))
        QFile::remove(directory.filePath(old)); // leftovers of an earlier tour would pass for this one's
    _report << QStringLiteral("# Tour of TessikAutomation %1 on the rig").arg(QLatin1String(TESSIK_VERSION));
}

void TourGuide::beginStep(const QString& title) {
    _report << QString() << QStringLiteral("## ") + title;
    std::printf("%s\n", qUtf8Printable(title));
    std::fflush(stdout);
}

void TourGuide::check(bool holds, const QString& statement) {
    ++_checks;
    _report << QStringLiteral("- %1 %2").arg(holds ? QStringLiteral("ok") : QStringLiteral("**FAULT**"), statement);
    if (holds) return;
    ++_faults;
    std::fprintf(stderr, "FAULT: %s\n", qUtf8Printable(statement));
}

bool TourGuide::waitFor(const std::function<bool()>& condition, int timeoutMilliseconds) {
    const QDeadlineTimer deadline(timeoutMilliseconds);
    QTimer wake; // looks at the condition and the clock even if nothing happens
    wake.start(2);
    while (!condition()) {
        if (deadline.hasExpired()) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void TourGuide::passTime(int milliseconds) {
    waitFor([] { return false; }, milliseconds);
}

void TourGuide::picture(QWidget& window, const QString& name) {
    passTime(50); // lets pending painting finish
    const QString file = QStringLiteral("%1-%2.png").arg(++_pictures, 2, 10, QLatin1Char('0')).arg(name);
    _report << QStringLiteral("\n![%1](%2)\n").arg(name, file);
    // In parallel with the tour: a tape may be rolling, and encoding takes several of its frames.
    _writing.emplace_back(
        file, std::async(std::launch::async, [image = window.grab().toImage(), path = QDir(_folder).filePath(file)] {
            return image.save(path);
        }));
}

int TourGuide::finish() {
    beginStep(QStringLiteral("Pictures"));
    QStringList missing;
    for (auto& [file, written] : _writing)
        if (!written.get()) missing << file;
    check(missing.isEmpty(), missing.isEmpty() ? QStringLiteral("all %1 are written").arg(_pictures)
                                               : QStringLiteral("not written: ") + missing.join(QStringLiteral(", ")));
    const QString summary = QStringLiteral("%1 statements checked, %2 did not hold").arg(_checks).arg(_faults);
    _report << QString() << summary << QString();
    QSaveFile file(QDir(_folder).filePath(QStringLiteral("report.md")));
    const QByteArray text = _report.join(QLatin1Char('\n')).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        std::fprintf(stderr, "cannot write %s: %s\n", qUtf8Printable(file.fileName()),
                     qUtf8Printable(file.errorString()));
        ++_faults;
    }
    std::printf("%s\n", qUtf8Printable(summary));
    return _faults;
}

} // namespace tessik
