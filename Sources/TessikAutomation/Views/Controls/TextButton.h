#pragma once

#include <QKeyEvent>
#include <QPushButton>

namespace tessik {

/// A button of a card. Space and Return belong to the window, so Up presses it where it has the keyboard focus.
class TextButton final : public QPushButton {
public:
    TextButton(const QString& text, const char* name, QWidget* parent) : QPushButton(text, parent) {
        setObjectName(QLatin1String(name));
        setFocusPolicy(Qt::TabFocus);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Up)
            click();
        else
            event->ignore();
    }
};

} // namespace tessik
