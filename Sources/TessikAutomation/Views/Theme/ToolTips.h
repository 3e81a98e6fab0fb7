#pragma once

#include <QRect>
#include <QString>

class QPoint;
class QWidget;

/// Shows every tooltip of the program, in lines of at most `width` pixels.
namespace tessik::ToolTips {

inline constexpr int width = 360;

/// Takes over the tooltips of all widgets.
void install();
/// At a point on the screen, for as long as the pointer stays in `part` of the widget.
void show(QPoint globalPosition, const QString& text, QWidget* widget, const QRect& part);

} // namespace tessik::ToolTips
