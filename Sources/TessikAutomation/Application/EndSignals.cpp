#include "TessikAutomation/Application/EndSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tessik {
namespace {

constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};
int writeEnd = -1; // set before a handler can run

/// Does only what a signal handler may.
void tell(int signal) {
    const int before = errno;
    const auto byte = char(signal);
    [[maybe_unused]] const ssize_t written = write(writeEnd, &byte, 1);
    errno = before;
}

int openPipe() {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) qFatal("There is no pipe left for signals");
    writeEnd = ends[1];
    return ends[0];
}

} // namespace

EndSignals::EndSignals(std::function<void(int signal)> onEnd)
    : _onEnd(std::move(onEnd)), _arrivals(openPipe()), _notifier(_arrivals, QSocketNotifier::Read) {
    QObject::connect(&_notifier, &QSocketNotifier::activated, &_notifier, [this] {
        char signal = 0;
        if (read(_arrivals, &signal, 1) == 1) _onEnd(signal);
    });
    struct sigaction action {};
    action.sa_handler = tell;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART);
    for (const int signal : endSignals)
        sigaction(signal, &action, nullptr);
}

EndSignals::~EndSignals() {
    for (const int each : endSignals)
        std::signal(each, SIG_DFL);
    _notifier.setEnabled(false);
    close(_arrivals);
    close(writeEnd);
}

} // namespace tessik
