#include "TessikAutomation/Views/Snapshots/SnapshotsPopover.h"

#include "TessikAutomation/Views/Controls/NameSection.h"
#include "TessikAutomation/Views/Controls/UndoStep.h"

#include <QUndoStack>

namespace tessik {
namespace {

/// Adds or removes a snapshot, with its star.
class SnapshotPresence final : public QUndoCommand {
public:
    enum class Change : std::uint8_t { capture, removal };
    SnapshotPresence(SnapshotStore& snapshots, const Snapshot& snapshot, Change change)
        : QUndoCommand((change == Change::capture ? QStringLiteral("capturing %1") : QStringLiteral("deleting %1"))
                           .arg(snapshot.name)),
          _snapshots(snapshots),
          _snapshot(snapshot),
          _isCapture(change == Change::capture),
          _index(snapshots.snapshots.value().size()) {}
    void redo() override { _isCapture ? putIn() : takeOut(); }
    void undo() override { _isCapture ? takeOut() : putIn(); }

private:
    void takeOut() {
        const QList<Snapshot>& all = _snapshots.snapshots.value();
        const auto found =
            std::find_if(all.begin(), all.end(), [this](const Snapshot& each) { return each.id == _snapshot.id; });
        if (found == all.end()) return;
        _snapshot = *found; // it may have been renamed
        _index = found - all.begin();
        _wasDefault = _snapshots.defaultSnapshotID.value() == _snapshot.id;
        _snapshots.remove(_snapshot.id);
    }
    void putIn() {
        _snapshots.insert(_index, _snapshot);
        if (_wasDefault && !_snapshots.defaultSnapshotID.value()) _snapshots.setDefault(_snapshot.id);
    }

    SnapshotStore& _snapshots;
    Snapshot _snapshot;
    const bool _isCapture;
    qsizetype _index;
    bool _wasDefault = false;
};

using Change = SnapshotPresence::Change;

} // namespace

SnapshotsPopover::SnapshotsPopover(SnapshotStore& snapshots, SnapshotRecall& recall, QUndoStack& history,
                                   SymbolButton& button, DrawingContext& drawing, QWidget* over, WallClock clock)
    : Popover(QStringLiteral("SNAPSHOTS"), button, drawing, over),
      _snapshots(snapshots),
      _recall(recall),
      _history(history),
      _clock(std::move(clock)),
      _list(new RecordList(
          QStringLiteral("No snapshots yet"),
          {.count = [this] { return _snapshots.snapshots.value().size(); },
           .prepare = [this](RecordRow& row) { prepareRow(row); },
           .show = [this](RecordRow& row, qsizetype i) { showRow(row, _snapshots.snapshots.value()[i]); },
           .idAt = [this](qsizetype i) { return _snapshots.snapshots.value()[i].id; }},
          drawing, this)),
      _capture(new TextButton(QStringLiteral("Capture…"), "capture", this)),
      _naming(new NameSection(QStringLiteral("New Snapshot"), QStringLiteral("Cancel"), this)) {
    addSection(_list);
    addSection(_capture);
    addSection(_naming);
    _capture->setToolTip(QStringLiteral("Keep the whole console as it is now"));
    connect(_capture, &QPushButton::clicked, this, [this] { showNaming(true); });
    connect(_naming, &NameSection::saved, this, [this](const QString& name) {
        _history.push(new SnapshotPresence(_snapshots, _recall.capture(name, _clock()), Change::capture));
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
    connect(&row, &RecordRow::chosen, this, [this, &row] { recall(row.id()); });
    connect(&row, &RecordRow::renamed, this, [this, &row](const QString& name) {
        if (const auto snapshot = _snapshots.find(row.id()))
            _history.push(UndoStep::renaming(_snapshots, snapshot->id, snapshot->name, name));
    });
    connect(&row, &RecordRow::removed, this, [this, &row] {
        if (const auto snapshot = _snapshots.find(row.id()))
            _history.push(new SnapshotPresence(_snapshots, *snapshot, Change::removal));
    });
}

void SnapshotsPopover::recall(const QUuid& id) {
    const std::optional<Snapshot> snapshot = _snapshots.find(id);
    if (!snapshot) return;
    const auto former = std::make_shared<SnapshotRecall::Former>();
    _history.push(new UndoStep(
        QStringLiteral("recalling %1").arg(snapshot->name),
        [this, former, snapshot = *snapshot] {
            *former = _recall.recall(snapshot);
            Q_EMIT recalled(snapshot);
        },
        [this, former] {
            _recall.putBack(*former);
            Q_EMIT recallUndone();
        }));
}

void SnapshotsPopover::showRow(RecordRow& row, const Snapshot& snapshot) {
    const bool isDefault = snapshot.id == _snapshots.defaultSnapshotID.value();
    const QString date = proposedName(snapshot.createdAt);
    row.setRecord(snapshot.id, snapshot.name, isDefault ? date + QStringLiteral("  ·  starting state") : date);
    auto* star = row.findChild<SymbolButton*>(QStringLiteral("star"));
    star->setSymbol(isDefault ? QStringLiteral("star-fill") : QStringLiteral("star"));
    star->setColor(isDefault ? &Tints::ledAmber : &Tints::legend);
    star->setChecked(isDefault);
    star->setAccessibleName(QStringLiteral("Starting state"));
}

void SnapshotsPopover::refresh() {
    _list->refresh();
    fit();
}

} // namespace tessik
