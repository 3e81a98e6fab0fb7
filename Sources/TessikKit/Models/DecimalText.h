#pragma once

#include <QString>

namespace tessik {

/// A number with `decimals` digits after its point, as "%.*f" of C writes it in every locale: what lies just between
/// two goes to the even one, which Qt's own formatting does not do.
QString decimalText(double value, int decimals);

} // namespace tessik
