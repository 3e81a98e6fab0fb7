#pragma once

#include "TessikAutomation/Views/Controls/SymbolButton.h"

#include <QPointer>

class QVBoxLayout;

namespace tessik {

/// A list on a card below the button that opens and closes it; not a window of its own. Opened by the user, it takes
/// the keyboard focus and returns it on closing; one that opens by itself leaves the focus where it is until something
/// in it is clicked or Tab is pressed. Up and Down move through its contents, Return presses. A press elsewhere in the
/// window or Escape closes it.
class Popover : public QWidget {
    Q_OBJECT

public:
    /// Covers all of `over`, which contains the button too.
    Popover(const QString& title, SymbolButton& button, DrawingContext& drawing, QWidget* over);

    /// Of a card's contents.
    static constexpr int contentWidth = 360;

    /// Opens by itself.
    void open();
    void close();

protected:
    /// Adds a section below the existing ones.
    void addSection(QWidget* section);
    /// Shows the current contents. Follows each change after a moment, when everything that belongs to it is done.
    virtual void refresh() = 0;
    void refreshSoon();
    /// The user has opened it.
    virtual void takeKeyboard() { setFocus(); }
    /// Call after sections or their heights changed.
    void fit();
    /// Call for a part about to go away: Qt would pass its keyboard focus to its neighbour.
    void leaveKeyboard(QWidget& part);
    SymbolButton& button() const { return _button; }
    DrawingContext& drawing() const { return _drawing; }

    bool event(QEvent* event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyLook();
    QWidget* neighbour(QWidget& of, bool forward) const;

    SymbolButton& _button;
    DrawingContext& _drawing;
    QVBoxLayout* _layout;
    QPointer<QWidget> _before; ///< had the keyboard focus when the user opened it
    bool _isRefreshDue = false;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
