#pragma once

#include <QRect>
#include <QString>

class QPoint;
class QWidget;

/// Every tooltip of the program is shown here, in lines of at most `width` pixels.
namespace tessik::ToolTips {

inline constexpr int width = 360;

/// From here on, those of all widgets are.
void install();
/// At a point of the screen, as long as the pointer stays in `part` of the widget.
void show(QPoint globalPosition, const QString& text, QWidget* widget, const QRect& part);

} // namespace tessik::ToolTips
