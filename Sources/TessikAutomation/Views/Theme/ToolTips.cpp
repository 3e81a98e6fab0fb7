#include "TessikAutomation/Views/Theme/ToolTips.h"

#include <QApplication>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QToolTip>
#include <QWidget>

namespace tessik::ToolTips {
namespace {

/// Qt wraps only rich text, and at eighty letters a line.
QString wrapped(const QString& text) {
    const QFontMetrics metrics(QToolTip::font());
    QStringList lines;
    for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
        QString line;
        for (const QString& word : paragraph.split(QLatin1Char(' '))) {
            const QString longer = line.isNull() ? word : line + QLatin1Char(' ') + word;
            if (!line.isNull() && metrics.horizontalAdvance(longer) > width)
                lines << std::exchange(line, word);
            else
                line = longer;
        }
        lines << line;
    }
    return lines.join(QLatin1Char('\n'));
}

class Wrapper final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() != QEvent::ToolTip || !receiver->isWidgetType()) return false;
        auto* widget = static_cast<QWidget*>(receiver);
        if (widget->toolTip().isEmpty()) return false; // it, or an ancestor, shows its own
        show(static_cast<QHelpEvent*>(event)->globalPos(), widget->toolTip(), widget, {});
        event->accept();
        return true;
    }
};

} // namespace

void install() { qApp->installEventFilter(new Wrapper(qApp)); }

void show(QPoint globalPosition, const QString& text, QWidget* widget, const QRect& part) {
    QToolTip::showText(globalPosition, wrapped(text), widget, part);
}

} // namespace tessik::ToolTips
