#pragma once

#include "TessikAutomation/Views/Controls/SymbolButton.h"

#include <QPointer>
#include <QUuid>

class QHBoxLayout;
class QMenu;

namespace tessik {

class EntryField;

/// A named record of the session in a list. A click chooses it; F2 and the context menu rename it in place; the trash,
/// Delete and the context menu remove it.
class RecordRow final : public QAbstractButton {
    Q_OBJECT

public:
    RecordRow(DrawingContext& drawing, QWidget* parent);

    /// What the row stands for. A name being typed for another record is dropped.
    void setRecord(const QUuid& id, const QString& name, const QString& detail);
    const QUuid& id() const { return _recordID; }
    const QString& detail() const { return _detail; }
    /// Shows whether the record is the selected one; rows without a mark show nothing.
    void setMark(std::optional<bool> selected);

    /// A button at the row's end, left of the trash.
    SymbolButton* addButton(const QString& symbol, const QString& text, const QString& help);
    void rename();

    QSize sizeHint() const override;

Q_SIGNALS:
    void renamed(const QString& name);
    void removed();
    /// The context menu is about to show; what the owner adds stands above Delete.
    void menuRequested(QMenu* menu);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QRect textRect() const;
    void endRename(bool keep);

    DrawingContext& _drawing;
    QUuid _recordID;
    QString _detail;
    std::optional<bool> _mark;
    QHBoxLayout* _layout;
    SymbolButton* _trash;
    QPointer<EntryField> _field;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
