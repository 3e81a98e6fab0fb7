#pragma once

#include <chrono>

namespace tessik {

/// Monotonic time since an arbitrary start, in nanoseconds.
using Uptime = std::chrono::nanoseconds;

/// Earlier than every real time by at least a century, and far enough from the ends of the type to be subtracted.
inline constexpr Uptime distantPast = -std::chrono::hours(24 * 365 * 100);

/// The source of time. Everything that measures time is given one, so that a test can play an hour in a second.
class UptimeClock {
public:
    virtual ~UptimeClock() = default;
    /// Never runs backwards. Callable from any thread.
    virtual Uptime now() const = 0;

    /// The machine's monotonic clock.
    static const UptimeClock& system();
};

/// A clock that stands still until it is moved; for tests and simulations on one thread.
class ManualUptimeClock final : public UptimeClock {
public:
    Uptime now() const override { return _now; }
    void advance(Uptime by) { _now += by; }

private:
    Uptime _now = std::chrono::seconds(1000);
};

} // namespace tessik
