#pragma once

#include <QString>

#include <functional>

namespace tessik::Type {

/// Told every text as it is drawn, by whoever wants to know what there is to read; normally empty.
inline std::function<void(const QString& text)> onDraw;

} // namespace tessik::Type
