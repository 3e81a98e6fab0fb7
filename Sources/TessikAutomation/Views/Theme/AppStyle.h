#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

class QWidget;

/// The look of what Qt draws itself: menus, lists, sheets, tooltips.
namespace tessik::AppStyle {

/// Sets style and type; call before the first window. Returns whether the system asks for dark or light, as reported
/// before its colours were replaced.
ColorScheme install();
/// Gives all widgets of the application the colours of a look.
void apply(const Look& look);
/// Gives a widget and its children a style sheet in which "@name" stands for one of the look's colours.
void applySheet(QWidget& widget, QString sheet, const Look& look);

} // namespace tessik::AppStyle
