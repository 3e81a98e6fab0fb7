#pragma once

#include "TessikKit/Models/UptimeClock.h"

#include <deque>

namespace tessik {

/// Watches whether what is sent to the desk comes back: a desk that echoes, or a cable from Out to In. Ten consecutive
/// sends that come back, with nothing else in between, are a loop, until one fails to return.
class EchoWatch {
public:
    /// The longest an echo takes after its message has landed.
    static constexpr Uptime latest = std::chrono::milliseconds(10);
    static constexpr int sendsToLoop = 10;

    /// `landsAt`: when the message has passed the desk's cable.
    void noteSent(Uptime now, int cc, int value, Uptime landsAt);
    /// Whether a received message is one of ours come back; it is then no longer awaited.
    bool take(Uptime stamp, int cc, int value);
    /// Gives up on what is long overdue, with allowance for a thread slow to hand messages on.
    void giveUp(Uptime now);

    bool isLoop() const { return _isLoop; }
    bool isWaiting() const { return !_onTheirWay.empty(); }

private:
    struct Sent {
        int cc, value;
        Uptime sentAt, landsAt;
    };
    void fail();

    std::deque<Sent> _onTheirWay; // oldest first
    int _inARow = 0;
    bool _isLoop = false;
};

} // namespace tessik
