#pragma once

#include <QSocketNotifier>

#include <functional>

namespace tessik {

/// Turns SIGTERM, SIGINT and SIGHUP, by which the system asks a program to end, into a call on the main thread. Only
/// the first of each kind: a second one ends the program at once. Have only one such object at a time.
class EndSignals {
public:
    explicit EndSignals(std::function<void(int signal)> onEnd);
    /// After this, signals end the program again.
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    const std::function<void(int signal)> _onEnd;
    const int _arrivals; // read end of the pipe
    QSocketNotifier _notifier;
};

} // namespace tessik
