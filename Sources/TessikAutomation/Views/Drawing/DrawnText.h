#pragma once

#include <QFont>
#include <QString>

#include <functional>

namespace tessik::Type {

/// Told every text, and how it is set, as it is drawn, by whoever wants to know what there is to read; normally empty.
inline std::function<void(const QString& text, const QFont& font)> onDraw;

} // namespace tessik::Type
