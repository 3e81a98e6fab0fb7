#pragma once

#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Snapshots/SnapshotRecall.h"
#include "TessikAutomation/Views/Controls/Popover.h"
#include "TessikAutomation/Views/Controls/RecordList.h"

class QPushButton;
class QUndoStack;

namespace tessik {

class NameSection;

/// The session's snapshots: captured, recalled by their button or Return, and one of them starred as the session's
/// starting state.
class SnapshotsPopover final : public Popover {
    Q_OBJECT

public:
    /// `history` can undo captures, recalls, renames and deletions.
    SnapshotsPopover(SnapshotStore& snapshots, SnapshotRecall& recall, QUndoStack& history, SymbolButton& button,
                     DrawingContext& drawing, QWidget* over, WallClock clock = currentSecond);

Q_SIGNALS:
    void recalled(const tessik::Snapshot& snapshot);
    void recallUndone();

protected:
    void refresh() override;
    void takeKeyboard() override { _list->setCurrent(0); }

private:
    void prepareRow(RecordRow& row);
    void showRow(RecordRow& row, const Snapshot& snapshot);
    void showNaming(bool isNaming);
    void recall(const QUuid& id);

    SnapshotStore& _snapshots;
    SnapshotRecall& _recall;
    QUndoStack& _history;
    const WallClock _clock;
    RecordList* _list;
    QPushButton* _capture;
    NameSection* _naming;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
