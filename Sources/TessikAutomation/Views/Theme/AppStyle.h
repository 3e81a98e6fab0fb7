#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

class QWidget;

/// The look of what Qt draws itself: menus, lists, sheets, tooltips.
namespace tessik::AppStyle {

/// Once, before the first window: style, type, and what the system reports before its colours are replaced.
void install();
/// Whether the system asked for dark or light when the program started.
ColorScheme systemColorScheme();
/// Gives all widgets of the application the colours of a look.
void apply(const Look& look);
/// Gives a widget and its children a style sheet in which "@name" stands for a colour of the look.
void applySheet(QWidget& widget, QString sheet, const Look& look);

} // namespace tessik::AppStyle
