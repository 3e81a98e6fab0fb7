#include "TessikKit/Models/DecimalText.h"

#include <array>
#include <charconv>

namespace tessik {

QString decimalText(double value, int decimals) {
    std::array<char, 512> text{}; // the longest number has 309 digits before its point
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return error == std::errc() ? QString::fromLatin1(text.data(), end - text.data()) : QString();
}

} // namespace tessik
