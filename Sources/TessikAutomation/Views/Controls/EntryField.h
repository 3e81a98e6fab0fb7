#pragma once

#include <QLineEdit>

namespace tessik {

/// A line of text that is kept or dropped: Return and Tab keep it, Escape drops it. Those keys go no further.
class EntryField final : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

Q_SIGNALS:
    void kept();
    void dropped();
    /// Tab, or with Shift backwards.
    void moved(bool forward);
    /// The keyboard went elsewhere.
    void left();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};

} // namespace tessik
