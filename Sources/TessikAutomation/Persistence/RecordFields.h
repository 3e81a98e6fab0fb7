#pragma once

#include "TessikKit/Models/ChannelState.h"
#include "TessikKit/Models/TimecodePosition.h"

#include <string_view>
#include <tuple>
#include <type_traits>

namespace tessik {

/// One field of a saved record: its key in files, and where the record holds it.
template <typename Record, typename Value>
struct RecordField {
    std::string_view key;
    Value Record::*member;
};
template <typename Record, typename Value>
RecordField(std::string_view, Value Record::*) -> RecordField<Record, Value>;

/// The fields of a saved record in writing order: a tuple of `RecordField`, defined beside each record. Writing,
/// reading, observing and resetting a record all walk it. A `std::optional` member is an optional key.
template <typename Record>
inline constexpr auto recordFields = std::false_type();

template <typename T>
concept SavedRecord = !std::is_same_v<decltype(recordFields<T>), const std::false_type>;

template <>
inline constexpr auto recordFields<ChannelSwitches> =
    std::tuple{RecordField{"monMuted", &ChannelSwitches::monMuted}, RecordField{"auxMuted", &ChannelSwitches::auxMuted},
               RecordField{"eqOn", &ChannelSwitches::eqOn}, RecordField{"chanMuted", &ChannelSwitches::chanMuted}};

template <>
inline constexpr auto recordFields<TimecodePosition> =
    std::tuple{RecordField{"frameRate", &TimecodePosition::frameRate}, RecordField{"hours", &TimecodePosition::hours},
               RecordField{"minutes", &TimecodePosition::minutes}, RecordField{"seconds", &TimecodePosition::seconds},
               RecordField{"frames", &TimecodePosition::frames}};

} // namespace tessik
