#include "TessikAutomation/Views/Automation/PassesPopover.h"

#include "TessikAutomation/Views/Automation/TakeCard.h"
#include "TessikAutomation/Views/Controls/UndoStep.h"

#include <QMenu>
#include <QUndoStack>

namespace tessik {
namespace {

bool isSelectedIn(const PassEngine& engine, const QUuid& id) {
    const std::optional<AutomationPass>& selected = engine.selectedPass.value();
    return selected && selected->id == id;
}

/// The time from its start to its last event: "3:20", "1:03:20".
QString lengthText(const AutomationPass& pass) {
    const std::int64_t last =
        pass.events.isEmpty() ? 0 : std::max<std::int64_t>(0, pass.events.constLast().frameOffset);
    const auto end = TimecodePosition::fromTotalFrames(pass.frameRate, last);
    const QString minutes = QStringLiteral("%1:%2").arg(end.minutes).arg(end.seconds, 2, 10, QLatin1Char('0'));
    return end.hours == 0
               ? minutes
               : QStringLiteral("%1:%2").arg(QString::number(end.hours), minutes.rightJustified(5, QLatin1Char('0')));
}

/// Deselects a selected pass, which comes back selected.
class PassRemoval final : public QUndoCommand {
public:
    PassRemoval(PassEngine& engine, PassStore& passes, AutomationPass pass)
        : QUndoCommand(QStringLiteral("deleting %1").arg(pass.name)),
          _engine(engine),
          _passes(passes),
          _pass(std::move(pass)) {}
    void redo() override {
        _pass = _passes.find(_pass.id).value_or(_pass); // it may have been renamed
        _wasSelected = isSelectedIn(_engine, _pass.id);
        _wasCompared = _engine.isComparing.value();
        if (_wasSelected) _engine.select(std::nullopt);
        _passes.remove(_pass.id);
    }
    void undo() override {
        _passes.save(_pass);
        if (!_wasSelected || _engine.selectedPass.value()) return;
        _engine.select(_pass);
        _engine.compare(_wasCompared);
    }

private:
    PassEngine& _engine;
    PassStore& _passes;
    AutomationPass _pass;
    bool _wasSelected = false;
    bool _wasCompared = false; // with a waiting take
};

} // namespace

PassesPopover::PassesPopover(PassEngine& engine, PassStore& passes, QUndoStack& history, SymbolButton& button,
                             DrawingContext& drawing, QWidget* over)
    : Popover(QStringLiteral("PASSES"), button, drawing, over),
      _engine(engine),
      _passes(passes),
      _history(history),
      _take(new TakeCard(engine, passes, history, drawing, this)),
      _list(new RecordList(QStringLiteral("No passes yet"),
                           {.count = [this] { return _passes.passes.value().size(); },
                            .prepare = [this](RecordRow& row) { prepareRow(row); },
                            .show = [this](RecordRow& row, qsizetype i) { showRow(row, _passes.passes.value()[i]); },
                            .idAt = [this](qsizetype i) { return _passes.passes.value()[i].id; }},
                           drawing, this)) {
    _take->hide();
    addSection(_take);
    addSection(_list);
    connect(_take, &TakeCard::lanesWanted, this, &PassesPopover::lanesWanted);
    auto* import = new TextButton(QStringLiteral("Import MIDI File…"), "import", this);
    import->setToolTip(QStringLiteral("Make a pass from the desk's controllers in a Standard MIDI File"));
    connect(import, &QPushButton::clicked, this, &PassesPopover::importWanted);
    addSection(import);
    const auto changed = [this] { refreshSoon(); };
    _observers.push_back(passes.passes.addNotifier(changed));
    _observers.push_back(engine.selectedPass.addNotifier(changed));
    _observers.push_back(engine.waitingTake.addNotifier(changed));
    refresh();
}

void PassesPopover::prepareRow(RecordRow& row) {
    const auto choose = [this, &row] {
        const auto pass = _passes.find(row.id());
        if (!pass) return;
        _engine.select(pass);
        Q_EMIT chosen(*pass);
    };
    connect(&row, &QAbstractButton::clicked, this, choose);
    connect(&row, &RecordRow::chosen, this, choose);
    connect(&row, &RecordRow::renamed, this, [this, &row](const QString& name) {
        if (const auto pass = _passes.find(row.id()))
            _history.push(UndoStep::renaming(_passes, pass->id, pass->name, name));
    });
    const auto showLanes = [this, &row] {
        if (const auto pass = _passes.find(row.id())) Q_EMIT lanesWanted(*pass);
    };
    SymbolButton* lanes = row.addButton(QStringLiteral("lanes"), {}, QStringLiteral("Show Lanes"));
    lanes->setObjectName(QStringLiteral("lanes"));
    lanes->setAccessibleName(QStringLiteral("Show Lanes"));
    connect(lanes, &QAbstractButton::clicked, this, showLanes);
    connect(&row, &RecordRow::menuRequested, this, [this, &row, showLanes](QMenu* menu) {
        menu->addAction(QStringLiteral("Show Lanes"), this, showLanes);
        menu->addAction(QStringLiteral("Export as MIDI File…"), this, [this, id = row.id()] {
            if (const auto pass = _passes.find(id)) Q_EMIT exportWanted(*pass);
        });
    });
    connect(&row, &RecordRow::removed, this, [this, &row] {
        if (auto pass = _passes.find(row.id())) _history.push(new PassRemoval(_engine, _passes, *std::move(pass)));
    });
}

void PassesPopover::showRow(RecordRow& row, const AutomationPass& pass) {
    row.setRecord(pass.id, pass.name,
                  QStringLiteral("%1  ·  %2  ·  %3 events")
                      .arg(pass.startTimecode.displayString(), lengthText(pass))
                      .arg(pass.events.size()),
                  proposedName(pass.createdAt));
    row.setMark(isSelectedIn(_engine, pass.id));
}

void PassesPopover::takeKeyboard() {
    const QList<AutomationPass>& passes = _passes.passes.value();
    const auto selected = std::find_if(passes.begin(), passes.end(),
                                       [this](const AutomationPass& pass) { return isSelectedIn(_engine, pass.id); });
    _list->setCurrent(selected == passes.end() ? 0 : selected - passes.begin());
}

void PassesPopover::refresh() {
    const qsizetype count = _passes.passes.value().size();
    button().setText(QStringLiteral("Passes (%1)").arg(count));
    button().setAccessibleName(button().text());
    _list->refresh();
    showTake();
    fit();
}

void PassesPopover::showTake() {
    const std::optional<AutomationPass>& take = _engine.waitingTake.value();
    const std::optional<QUuid> waiting = take ? std::optional(take->id) : std::nullopt;
    const std::optional<QUuid> before = std::exchange(_waiting, waiting);
    button().setCalling(waiting.has_value());
    _take->setVisible(waiting.has_value());
    _take->refresh();
    if (waiting == before) return;
    if (waiting) {
        _openedItself = isHidden();
        open();
    } else if (_engine.isRecording() && std::exchange(_openedItself, false)) {
        close(); // the tape goes on: what was shown is out of date
    }
}

} // namespace tessik
