#pragma once

#include <QString>

#include <ostream>

/// Texts in the messages of failed tests are readable.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
