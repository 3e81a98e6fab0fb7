#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <future>
#include <vector>

class QWidget;

namespace tessik {

/// What the steps of a tour have in common: waiting with the event loop running, pictures, and a report in which every
/// line says what was checked and whether it held.
class TourGuide {
public:
    /// Makes the folder; `isUsable` tells whether pictures can be written to it.
    explicit TourGuide(QString folder);
    bool isUsable() const { return _usable; }

    void beginStep(const QString& title);
    /// A statement that must be true; the tour continues either way.
    void check(bool holds, const QString& statement);
    /// Runs the event loop until `condition` holds, or `timeout` passes. Returns whether it held.
    bool waitFor(const std::function<bool()>& condition, int timeoutMilliseconds = 15'000);
    void passTime(int milliseconds);
    /// Writes a picture of the window, numbered in order.
    void picture(QWidget& window, const QString& name);

    /// Writes report.md beside the pictures. Returns the number of statements that did not hold, including the report's
    /// own.
    int finish();

private:
    const QString _folder;
    bool _usable = false;
    QStringList _report;
    int _pictures = 0;
    std::vector<std::pair<QString, std::future<bool>>> _writing; // pictures, by file
    int _checks = 0;
    int _faults = 0;
};

} // namespace tessik
