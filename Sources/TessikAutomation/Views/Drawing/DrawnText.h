#pragma once

#include <QFont>
#include <QString>

#include <functional>

namespace tessik::Type {

/// Called with every text, and its font, as it is drawn, for anyone who needs to know what can be read; normally empty.
inline std::function<void(const QString& text, const QFont& font)> onDraw;

} // namespace tessik::Type
