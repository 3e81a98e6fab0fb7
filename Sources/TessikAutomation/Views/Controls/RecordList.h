#pragma once

#include "TessikAutomation/Views/Controls/RecordRow.h"

#include <QScrollArea>

#include <map>

class QLabel;

namespace tessik {

/// A list of the session's records, however many: only those in sight have a row, and the one with the keyboard focus.
///
/// Up and Down, Page Up and Page Down, Home and End move through the records; Tab reaches one of them and its buttons.
class RecordList final : public QScrollArea {
    Q_OBJECT

public:
    /// How the list reaches its owner's records. All must be set.
    struct Records {
        std::function<qsizetype()> count;
        std::function<void(RecordRow&)> prepare; ///< a newly made row
        std::function<void(RecordRow&, qsizetype index)> show;
        std::function<QUuid(qsizetype index)> idAt;
    };
    RecordList(const QString& emptyText, Records records, DrawingContext& drawing, QWidget* parent);

    /// Shows the records as they are now. The keyboard focus stays with its record, or moves to the next if that is
    /// gone.
    void refresh();
    /// Brings a record into sight and gives it the keyboard focus; without records the list itself takes it.
    void setCurrent(qsizetype index);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void place();
    void bind(RecordRow& row, qsizetype index);
    RecordRow* makeRow();
    RecordRow* rowWithKeyboard() const;

    const Records _records;
    DrawingContext& _drawing;
    QLabel* _empty;
    QWidget* _content;
    qsizetype _current = 0;                  ///< the record that Tab reaches
    std::map<qsizetype, RecordRow*> _placed; ///< by record
    std::vector<RecordRow*> _spare;
};

} // namespace tessik
