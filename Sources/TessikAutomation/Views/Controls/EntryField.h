#pragma once

#include <QLineEdit>

namespace tessik {

/// A line of text to keep or drop: Return and Tab keep it, Escape drops it. Those keys go no further.
class EntryField final : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    /// For a field that opened unasked: until something is typed, its text is selected, and Space and Return are left
    /// to the window.
    void waitForTyping();
    bool isWaiting() const { return _isWaiting; }

Q_SIGNALS:
    void kept();
    void dropped();
    /// Tab, or with Shift backwards.
    void moved(bool forward);
    /// The keyboard focus went elsewhere.
    void left();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool _isWaiting = false;
};

} // namespace tessik
