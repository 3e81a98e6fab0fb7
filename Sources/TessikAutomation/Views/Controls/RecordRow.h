#pragma once

#include "TessikAutomation/Views/Controls/SymbolButton.h"

#include <QPointer>
#include <QUuid>

class QHBoxLayout;
class QMenu;

namespace tessik {

class EntryField;

/// A named record of the session in a list. A click or Return tells its owner; F2 and the context menu rename it in
/// place; the trash, Delete and the context menu remove it.
class RecordRow final : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int rowHeight = 40;

    RecordRow(DrawingContext& drawing, QWidget* parent);

    /// What the row stands for; `aside` is short and stands to the right of the name. Drops a name being typed for
    /// another record.
    void setRecord(const QUuid& id, const QString& name, const QString& detail, const QString& aside = {});
    const QUuid& id() const { return _recordID; }
    const QString& detail() const { return _detail; }
    /// Shows whether the record is the selected one; rows without a mark show nothing.
    void setMark(std::optional<bool> selected);

    /// A button at the row's end, left of the trash.
    SymbolButton* addButton(const QString& symbol, const QString& text, const QString& help);
    void rename();
    /// The row and its buttons, from the left.
    QList<QWidget*> parts();
    /// Whether Tab reaches them.
    void setInTabOrder(bool isIn);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// By Return; a click has its own signal.
    void chosen();
    void renamed(const QString& name);
    void removed();
    /// The context menu is about to show; what the owner adds appears above Delete.
    void menuRequested(QMenu* menu);
    /// The row received the keyboard focus.
    void focused();

protected:
    void nextCheckState() override {} // the record's owner decides
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QRect textRect() const;
    void endRename(bool keep);

    DrawingContext& _drawing;
    QUuid _recordID;
    QString _detail;
    QString _aside;
    std::optional<bool> _mark;
    QHBoxLayout* _layout;
    SymbolButton* _trash;
    QPointer<EntryField> _field;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
