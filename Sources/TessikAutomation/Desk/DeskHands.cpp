#include "TessikAutomation/Desk/DeskHands.h"

#include <utility>

namespace tessik {

std::optional<int> DeskHands::moved(Uptime stamp, int faderCC, std::optional<int> value) {
    while (!_recent.empty() && _recent.front().stamp < stamp - dumpWindow)
        _recent.pop_front();
    _recent.push_back({stamp, faderCC});
    std::optional<int>& known = _values[std::size_t(faderCC)];
    return std::exchange(known, value ? value : known);
}

void DeskHands::dumped(Uptime stamp, int cc) {
    for (const Message& message : std::exchange(_recent, {}))
        if (message.stamp >= stamp - dumpWindow) _values[std::size_t(message.cc)].reset();
    _values[std::size_t(cc)].reset();
}

} // namespace tessik
