#pragma once

#include "TessikAutomation/Automation/PassEventValue.h"
#include "TessikAutomation/Persistence/RecordFields.h"

namespace tessik {

/// One recorded change of one channel. A pass holds tens of thousands, so the record stays small.
struct TimedEvent {
    std::int64_t frameOffset = 0; ///< nominal frames since the pass's start timecode
    ChannelKind kind = ChannelKind::stereo();
    PassEventValue value = PassEventValue::fader(0);

    friend bool operator==(const TimedEvent&, const TimedEvent&) = default;
};
static_assert(sizeof(TimedEvent) == 40);

template <>
inline constexpr auto recordFields<TimedEvent> =
    std::tuple{RecordField{"frameOffset", &TimedEvent::frameOffset}, RecordField{"kind", &TimedEvent::kind},
               RecordField{"value", &TimedEvent::value}};

} // namespace tessik

Q_DECLARE_TYPEINFO(tessik::TimedEvent, Q_RELOCATABLE_TYPE);
