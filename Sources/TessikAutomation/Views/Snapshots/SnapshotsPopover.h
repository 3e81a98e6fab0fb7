#pragma once

#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Snapshots/SnapshotRecall.h"
#include "TessikAutomation/Views/Controls/Popover.h"

class QPushButton;
class QUndoStack;

namespace tessik {

class NameSection;

/// The session's snapshots: taken, recalled, and one of them starred as the session's starting state.
class SnapshotsPopover final : public Popover {
    Q_OBJECT

public:
    /// What is deleted can be taken back from `history`.
    SnapshotsPopover(SnapshotStore& snapshots, SnapshotRecall& recall, QUndoStack& history, SymbolButton& button,
                     DrawingContext& drawing, QWidget* over, WallClock clock = currentSecond);

    /// Called after a recall.
    std::function<void(const Snapshot&)> onRecalled;

protected:
    void prepareRow(RecordRow& row) override;
    void refresh() override;

private:
    void showNaming(bool isNaming);
    std::optional<Snapshot> snapshotOf(const QUuid& id) const;
    void recall(const QUuid& id);

    SnapshotStore& _snapshots;
    SnapshotRecall& _recall;
    QUndoStack& _history;
    const WallClock _clock;
    QPushButton* _capture;
    NameSection* _naming;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
