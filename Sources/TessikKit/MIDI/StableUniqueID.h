#pragma once

#include <QString>

#include <cstdint>

namespace tessik {

enum class PortDirection : std::uint8_t { source, destination };

/// A port's id, derived from what stays the same across boots and replugs: its direction, its client's and its own name
/// and, only to distinguish ports of equal names, `ordinal` (0 for the first). FNV-1a, folded to a signed number, never
/// 0.
inline std::int32_t stableUniqueID(PortDirection direction, const QString& client, const QString& port, int ordinal) {
    std::uint32_t hash = 2166136261u;
    const auto mix = [&hash](const QByteArray& bytes) {
        for (const char byte : bytes)
            hash = (hash ^ std::uint8_t(byte)) * 16777619u;
        hash = (hash ^ 0xFFu) * 16777619u; // never in UTF-8 text: separates the parts
    };
    mix(direction == PortDirection::source ? "source" : "destination");
    mix(client.toUtf8());
    mix(port.toUtf8());
    if (ordinal > 0) mix(QByteArray::number(ordinal));
    return hash == 0 ? 1 : std::int32_t(hash);
}

} // namespace tessik
