#pragma once

#include "TessikAutomation/Automation/TimedEvent.h"
#include "TessikAutomation/Snapshots/ChannelSnapshot.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <QList>

namespace tessik {

/// A timed event as the desk's controllers carry it: each fader and each switch byte is a lane, named by its
/// controller.
struct LaneEvent {
    std::int64_t frameOffset; ///< nominal frames since the pass's start timecode
    std::uint8_t cc;          ///< fader or switch controller of a channel that exists
    std::uint8_t value;       ///< 0 to 127

    /// None if the channel does not exist.
    static std::optional<LaneEvent> of(const TimedEvent& event);
    TimedEvent timedEvent() const;
};

/// A console state lane by lane; lanes of channels that it omits have no value.
ControllerValues laneValues(const QList<ChannelSnapshot>& state);

} // namespace tessik
