#pragma once

#include "TessikAutomation/Persistence/RecordFields.h"

namespace tessik {

/// A channel's name and colour on its scribble strip.
struct ChannelLabel {
    QString name;     ///< may be empty
    QString colorHex; ///< "RRGGBB" in upper-case hexadecimal; any other text from a file is kept

    friend bool operator==(const ChannelLabel&, const ChannelLabel&) = default;
};

template <>
inline constexpr auto recordFields<ChannelLabel> =
    std::tuple{RecordField{"name", &ChannelLabel::name}, RecordField{"colorHex", &ChannelLabel::colorHex}};

/// The colours offered for a strip, in order: a neutral grey, then warm to cool and back to pink.
inline constexpr std::array<const char*, 9> channelLabelPalette{
    {"8A8A8A", "E0553F", "E0A83F", "E0D23F", "6FCB4E", "4EA8CB", "6F6FE0", "B34EE0", "E04EA0"}};

} // namespace tessik
