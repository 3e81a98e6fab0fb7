#pragma once

#include "TessikAutomation/Views/Controls/RecordRow.h"

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace tessik {

/// A list of the session's records on a card below the button that opens and closes it. It is no window of its own, and
/// the keyboard stays where it was until something in it is clicked. A press elsewhere in the window or Escape closes
/// it.
class Popover : public QWidget {
    Q_OBJECT

public:
    /// Lies over the whole of `over`, in which the button stands too.
    Popover(const QString& title, const QString& emptyText, SymbolButton& button, DrawingContext& drawing,
            QWidget* over);

    void open();
    void close();

protected:
    /// Where a section goes: below the title, above or below the list.
    void addAbove(QWidget* section);
    void addBelow(QWidget* section);
    /// For what is no list of records.
    void replaceList(QWidget* list);
    /// As many rows as there are records, new ones made by `makeRow`.
    const std::vector<RecordRow*>& rows(qsizetype count);
    virtual void prepareRow(RecordRow& row) = 0;
    /// Shows what there is now. Follows each change by a moment, when all that belongs to it is done.
    virtual void refresh() = 0;
    void refreshSoon();
    /// After sections or rows came or went.
    void fit();
    /// For what goes away: Qt would hand its keyboard to its neighbour.
    void leaveKeyboard(QWidget& part);
    SymbolButton& button() const { return _button; }
    DrawingContext& drawing() const { return _drawing; }

    bool event(QEvent* event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyLook();

    SymbolButton& _button;
    DrawingContext& _drawing;
    QVBoxLayout* _layout;
    QLabel* _empty;
    QScrollArea* _scroll;
    QWidget* _list;
    std::vector<RecordRow*> _rows;
    bool _isRefreshDue = false;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
