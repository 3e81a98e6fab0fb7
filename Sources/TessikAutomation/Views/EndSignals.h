#pragma once

#include <QSocketNotifier>

#include <functional>

namespace tessik {

/// Turns the signals by which the system asks a program to end, SIGTERM, SIGINT and SIGHUP, into a call on the main
/// thread. Only the first of each kind: a second one ends the program at once. One at a time.
class EndSignals {
public:
    explicit EndSignals(std::function<void(int signal)> onEnd);
    /// Signals end the program again.
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    const std::function<void(int signal)> _onEnd;
    const int _arrivals; // read end of the pipe
    QSocketNotifier _notifier;
};

} // namespace tessik
