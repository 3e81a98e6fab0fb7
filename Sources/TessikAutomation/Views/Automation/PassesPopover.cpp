#include "TessikAutomation/Views/Automation/PassesPopover.h"

#include "TessikAutomation/Views/Controls/NameSection.h"

#include <QMenu>
#include <QUndoStack>

namespace tessik {
namespace {

std::optional<AutomationPass> passOf(const PassStore& store, const QUuid& id) {
    for (const AutomationPass& pass : store.passes.value())
        if (pass.id == id) return pass;
    return std::nullopt;
}

bool isSelectedIn(const PassEngine& engine, const QUuid& id) {
    const std::optional<AutomationPass>& selected = engine.selectedPass.value();
    return selected && selected->id == id;
}

/// A selected pass that plays plays on; one that does not is let go of.
class PassRemoval final : public QUndoCommand {
public:
    PassRemoval(PassEngine& engine, PassStore& passes, AutomationPass pass)
        : QUndoCommand(QStringLiteral("deleting %1").arg(pass.name)),
          _engine(engine),
          _passes(passes),
          _pass(std::move(pass)) {}
    void redo() override {
        _pass = passOf(_passes, _pass.id).value_or(_pass); // it may have been renamed
        if (isSelectedIn(_engine, _pass.id) && !_engine.isRolling.value()) _engine.select(std::nullopt);
        _passes.remove(_pass.id);
    }
    void undo() override { _passes.save(_pass); }

private:
    PassEngine& _engine;
    PassStore& _passes;
    AutomationPass _pass;
};

} // namespace

PassesPopover::PassesPopover(PassEngine& engine, PassStore& passes, QUndoStack& history, SymbolButton& button,
                             DrawingContext& drawing, QWidget* over)
    : Popover(QStringLiteral("PASSES"), QStringLiteral("No passes yet"), button, drawing, over),
      _engine(engine),
      _passes(passes),
      _history(history),
      _take(new NameSection(QStringLiteral("Save Pass"), QStringLiteral("Discard"), this)) {
    _take->hide();
    addAbove(_take);
    connect(_take, &NameSection::saved, this, [this](const QString& name) { _engine.finishRecording(name, _passes); });
    connect(_take, &NameSection::dropped, this, [this] { _engine.discardTake(); });
    auto* import = new TextButton(QStringLiteral("Import MIDI File…"), "import", this);
    import->setToolTip(QStringLiteral("Make a pass of the desk's controllers in a Standard MIDI File"));
    connect(import, &QPushButton::clicked, this, [this] { onImport(); });
    addBelow(import);
    const auto changed = [this] { refreshSoon(); };
    _observers.push_back(passes.passes.addNotifier(changed));
    _observers.push_back(engine.selectedPass.addNotifier(changed));
    _observers.push_back(engine.recordingPass.addNotifier(changed));
    _observers.push_back(engine.mode.addNotifier(changed)); // leaving it ends a take, also an empty one
    refresh();
}

void PassesPopover::prepareRow(RecordRow& row) {
    connect(&row, &QAbstractButton::clicked, this, [this, &row] { choose(row.id()); });
    connect(&row, &RecordRow::renamed, this, [this, &row](const QString& name) { _passes.rename(row.id(), name); });
    const auto showLanes = [this, &row] {
        if (const auto pass = passOf(_passes, row.id())) onShowLanes(*pass);
    };
    SymbolButton* lanes = row.addButton(QStringLiteral("lanes"), {}, QStringLiteral("Show Lanes"));
    lanes->setObjectName(QStringLiteral("lanes"));
    lanes->setAccessibleName(QStringLiteral("Show Lanes"));
    connect(lanes, &QAbstractButton::clicked, this, showLanes);
    connect(&row, &RecordRow::menuRequested, this, [this, &row, showLanes](QMenu* menu) {
        menu->addAction(QStringLiteral("Show Lanes"), this, showLanes);
        menu->addAction(QStringLiteral("Export as MIDI File…"), this, [this, id = row.id()] {
            if (const auto pass = passOf(_passes, id)) onExport(*pass);
        });
    });
    connect(&row, &RecordRow::removed, this, [this, &row] {
        if (auto pass = passOf(_passes, row.id())) _history.push(new PassRemoval(_engine, _passes, *std::move(pass)));
    });
}

bool PassesPopover::isSelected(const QUuid& id) const { return isSelectedIn(_engine, id); }

void PassesPopover::choose(const QUuid& id) { _engine.select(isSelected(id) ? std::nullopt : passOf(_passes, id)); }

void PassesPopover::refresh() {
    const QList<AutomationPass>& passes = _passes.passes.value();
    button().setText(QStringLiteral("Passes (%1)").arg(passes.size()));
    button().setAccessibleName(button().text());
    const std::vector<RecordRow*>& all = rows(passes.size());
    for (qsizetype i = 0; i < passes.size(); ++i) {
        RecordRow& row = *all[std::size_t(i)];
        row.setRecord(passes[i].id, passes[i].name, QStringLiteral("%1 events").arg(passes[i].events.size()));
        row.setMark(isSelected(passes[i].id));
    }
    showTake();
    fit();
}

void PassesPopover::showTake() {
    const std::optional<AutomationPass>& take = _engine.recordingPass.value();
    const std::optional<QUuid> waiting = take && !_engine.isRecording() ? std::optional(take->id) : std::nullopt;
    const std::optional<QUuid> before = std::exchange(_waiting, waiting);
    button().setCalling(waiting.has_value());
    _take->setVisible(waiting.has_value());
    if (waiting) _take->setDetail(QStringLiteral("%1 events").arg(take->events.size()));
    if (waiting == before) return;
    if (waiting) {
        _take->propose(take->name);
        _openedItself = isHidden();
        open();
    } else if (_engine.isRecording() && std::exchange(_openedItself, false)) {
        close(); // the tape goes on: what it said is past
    }
}

} // namespace tessik
