#pragma once

#include <QAccessible>

class QWidget;

namespace tessik {

/// What a screen reader takes a widget for whose class says nothing. Its name and description are the widget's own.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace tessik
