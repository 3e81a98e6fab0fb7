#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"

#include "TessikAutomation/Views/Controls/NameSection.h"

#include <QUndoStack>

namespace tessik {
namespace {

class SnapshotRemoval final : public QUndoCommand {
public:
    SnapshotRemoval(SnapshotStore& snapshots, const Snapshot& snapshot)
        : QUndoCommand(QStringLiteral("deleting %1").arg(snapshot.name)), _snapshots(snapshots), _snapshot(snapshot) {}
    void redo() override {
        const QList<Snapshot>& all = _snapshots.snapshots.value();
        const auto found =
            std::find_if(all.begin(), all.end(), [this](const Snapshot& each) { return each.id == _snapshot.id; });
        if (found == all.end()) return;
        _snapshot = *found; // it may have been renamed
        _index = found - all.begin();
        _wasDefault = _snapshots.defaultSnapshotID.value() == _snapshot.id;
        _snapshots.remove(_snapshot.id);
    }
    void undo() override {
        _snapshots.insert(_index, _snapshot);
        if (_wasDefault && !_snapshots.defaultSnapshotID.value()) _snapshots.setDefault(_snapshot.id);
    }

private:
    SnapshotStore& _snapshots;
    Snapshot _snapshot;
    qsizetype _index = 0;
    bool _wasDefault = false;
};

} // namespace

SnapshotsPopover::SnapshotsPopover(SnapshotStore& snapshots, SnapshotRecall& recall, QUndoStack& history,
                                   SymbolButton& button, DrawingContext& drawing, QWidget* over, WallClock clock)
    : Popover(QStringLiteral("SNAPSHOTS"), QStringLiteral("No snapshots yet"), button, drawing, over),
      _snapshots(snapshots),
      _recall(recall),
      _history(history),
      _clock(std::move(clock)),
      _capture(new TextButton(QStringLiteral("Capture…"), "capture", this)),
      _naming(new NameSection(QStringLiteral("New Snapshot"), QStringLiteral("Cancel"), this)) {
    addBelow(_capture);
    addBelow(_naming);
    _capture->setToolTip(QStringLiteral("Keep the whole console as it is now"));
    connect(_capture, &QPushButton::clicked, this, [this] { showNaming(true); });
    connect(_naming, &NameSection::saved, this, [this](const QString& name) {
        _snapshots.save(_recall.capture(name, _clock()));
        showNaming(false);
    });
    connect(_naming, &NameSection::dropped, this, [this] { showNaming(false); });
    connect(&_naming->field(), &EntryField::dropped, this, [this] { showNaming(false); });
    showNaming(false);
    const auto changed = [this] { refreshSoon(); };
    _observers.push_back(snapshots.snapshots.addNotifier(changed));
    _observers.push_back(snapshots.defaultSnapshotID.addNotifier(changed));
    refresh();
}

void SnapshotsPopover::showNaming(bool isNaming) {
    _capture->setVisible(!isNaming);
    _naming->setVisible(isNaming);
    fit();
    if (!isNaming) return;
    _naming->propose(proposedName(_clock()));
    _naming->field().selectAll();
    _naming->field().setFocus(Qt::OtherFocusReason);
}

void SnapshotsPopover::prepareRow(RecordRow& row) {
    SymbolButton* recallButton = row.addButton(QStringLiteral("recall"), QStringLiteral("Recall"),
                                               QStringLiteral("Put the console back to this snapshot"));
    recallButton->setObjectName(QStringLiteral("recall"));
    recallButton->setColor(&Tints::focusRing);
    connect(recallButton, &QAbstractButton::clicked, this, [this, &row] { recall(row.id()); });
    SymbolButton* star = row.addButton(QStringLiteral("star"), {},
                                       QStringLiteral("Use as this session's starting console state -- recalled "
                                                      "automatically when the session opens"));
    star->setObjectName(QStringLiteral("star"));
    star->setCheckable(true);
    connect(star, &QAbstractButton::clicked, this, [this, &row] { _snapshots.toggleDefault(row.id()); });
    connect(&row, &RecordRow::renamed, this, [this, &row](const QString& name) { _snapshots.rename(row.id(), name); });
    connect(&row, &RecordRow::removed, this, [this, &row] {
        if (const auto snapshot = snapshotOf(row.id())) _history.push(new SnapshotRemoval(_snapshots, *snapshot));
    });
}

std::optional<Snapshot> SnapshotsPopover::snapshotOf(const QUuid& id) const {
    for (const Snapshot& snapshot : _snapshots.snapshots.value())
        if (snapshot.id == id) return snapshot;
    return std::nullopt;
}

void SnapshotsPopover::recall(const QUuid& id) {
    const std::optional<Snapshot> snapshot = snapshotOf(id);
    if (!snapshot) return;
    _recall.recall(*snapshot);
    if (onRecalled) onRecalled(*snapshot);
}

void SnapshotsPopover::refresh() {
    const QList<Snapshot>& snapshots = _snapshots.snapshots.value();
    const std::vector<RecordRow*>& all = rows(snapshots.size());
    for (qsizetype i = 0; i < snapshots.size(); ++i) {
        RecordRow& row = *all[std::size_t(i)];
        const bool isDefault = snapshots[i].id == _snapshots.defaultSnapshotID.value();
        row.setRecord(snapshots[i].id, snapshots[i].name, isDefault ? QStringLiteral("starting state") : QString());
        auto* star = row.findChild<SymbolButton*>(QStringLiteral("star"));
        star->setSymbol(isDefault ? QStringLiteral("star-fill") : QStringLiteral("star"));
        star->setColor(isDefault ? &Tints::ledAmber : &Tints::legend);
        star->setChecked(isDefault);
        star->setAccessibleName(QStringLiteral("Starting state"));
    }
    fit();
}

} // namespace tessik
