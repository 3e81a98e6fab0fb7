#pragma once

#include <QKeyEvent>
#include <QPushButton>

namespace tessik {

/// Text for a button or a menu that shows it as it is: "&" marks no letter.
inline QString literally(QString text) { return text.replace(QLatin1Char('&'), QLatin1String("&&")); }

/// A button of a card. Return presses it when it has the keyboard focus; Space belongs to the tape and does nothing
/// here.
class TextButton final : public QPushButton {
public:
    TextButton(const QString& text, const char* name, QWidget* parent) : QPushButton(text, parent) {
        setObjectName(QLatin1String(name));
        setFocusPolicy(Qt::TabFocus);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            event->ignore();
    }
};

} // namespace tessik
