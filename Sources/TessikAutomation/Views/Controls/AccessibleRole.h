#pragma once

#include <QAccessible>

class QWidget;

namespace tessik {

/// How a screen reader treats a widget whose class does not say. Its name and description are the widget's own.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace tessik
