#pragma once

#include "TessikAutomation/Views/Controls/SymbolButton.h"

#include <QPointer>

class QVBoxLayout;

namespace tessik {

/// A list on a card below the button that opens and closes it. It is no window of its own. Opened by its user it has
/// the keyboard, and gives it back when it closes; one that opens by itself leaves the keyboard where it is until
/// something in it is clicked or Tab is pressed. Up and Down go over what it holds, Return presses. A press elsewhere
/// in the window or Escape closes it.
class Popover : public QWidget {
    Q_OBJECT

public:
    /// Lies over the whole of `over`, in which the button stands too.
    Popover(const QString& title, SymbolButton& button, DrawingContext& drawing, QWidget* over);

    /// Of what a card holds.
    static constexpr int contentWidth = 360;

    /// Opens by itself.
    void open();
    void close();

protected:
    /// Below the sections that are there.
    void addSection(QWidget* section);
    /// Shows what there is now. Follows each change by a moment, when all that belongs to it is done.
    virtual void refresh() = 0;
    void refreshSoon();
    /// Its user has opened it.
    virtual void takeKeyboard() { setFocus(); }
    /// After sections or their heights changed.
    void fit();
    /// For what goes away: Qt would hand its keyboard to its neighbour.
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
    QPointer<QWidget> _before; ///< had the keyboard when its user opened it
    bool _isRefreshDue = false;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
