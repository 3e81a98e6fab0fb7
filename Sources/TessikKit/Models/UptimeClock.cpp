#include "TessikKit/Models/UptimeClock.h"

namespace tessik {

const UptimeClock& UptimeClock::system() {
    class SystemUptimeClock final : public UptimeClock {
        Uptime now() const override { return std::chrono::steady_clock::now().time_since_epoch(); }
    };
    static const SystemUptimeClock clock;
    return clock;
}

} // namespace tessik
