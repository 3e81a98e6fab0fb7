#pragma once

#include <QString>

#include <ostream>

/// Makes texts readable in the messages of failed tests.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
