#include "TessikAutomation/Views/Automation/PassesPopover.h"

#include "TessikAutomation/Views/Controls/NameSection.h"

namespace tessik {

PassesPopover::PassesPopover(PassEngine& engine, PassStore& passes, SymbolButton& button, DrawingContext& drawing,
                             QWidget* over)
    : Popover(QStringLiteral("PASSES"), QStringLiteral("No passes yet"), button, drawing, over),
      _engine(engine),
      _passes(passes),
      _take(new NameSection(QStringLiteral("Save Pass"), QStringLiteral("Discard"), this)) {
    _take->hide();
    addAbove(_take);
    connect(_take, &NameSection::saved, this, [this](const QString& name) { _engine.finishRecording(name, _passes); });
    connect(_take, &NameSection::dropped, this, [this] { _engine.discardTake(); });
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
    connect(&row, &RecordRow::removed, this, [this, &row] { remove(row.id()); });
}

std::optional<AutomationPass> PassesPopover::pass(const QUuid& id) const {
    for (const AutomationPass& each : _passes.passes.value())
        if (each.id == id) return each;
    return std::nullopt;
}

bool PassesPopover::isSelected(const QUuid& id) const {
    const std::optional<AutomationPass>& selected = _engine.selectedPass.value();
    return selected && selected->id == id;
}

void PassesPopover::choose(const QUuid& id) { _engine.select(isSelected(id) ? std::nullopt : pass(id)); }

void PassesPopover::remove(const QUuid& id) {
    if (isSelected(id) && !_engine.isRolling.value()) _engine.select(std::nullopt);
    _passes.remove(id);
}

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
