#pragma once

#include <QString>

namespace tessik {

/// A number with `decimals` digits after the point, as C's "%.*f" writes it, in every locale: exact ties round to even,
/// unlike Qt's own formatting.
QString decimalText(double value, int decimals);

} // namespace tessik
