#include "TessikAutomation/Views/Automation/TakeCard.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QUndoStack>

namespace tessik {
namespace {

constexpr int choicePadding = 12; ///< beside a choice's text, on both sides

/// On undo the take waits again, or goes to the list if another one waits by then: nothing is lost.
class TakeDiscard final : public QUndoCommand {
public:
    TakeDiscard(PassEngine& engine, PassStore& passes, AutomationPass take)
        : QUndoCommand(QStringLiteral("discarding the take")),
          _engine(engine),
          _passes(passes),
          _take(std::move(take)) {}
    void redo() override {
        const std::optional<AutomationPass>& waiting = _engine.waitingTake.value();
        if (waiting && waiting->id == _take.id)
            _engine.discardTake();
        else if (_isListed)
            _passes.remove(_take.id);
        _isListed = false;
    }
    void undo() override {
        if (_engine.restoreTake(_take)) return;
        _passes.save(_take);
        _isListed = true;
    }

private:
    PassEngine& _engine;
    PassStore& _passes;
    const AutomationPass _take;
    bool _isListed = false; // by this command
};

} // namespace

TakeCard::TakeCard(PassEngine& engine, PassStore& passes, QUndoStack& history, DrawingContext& drawing, QWidget* parent)
    : NameSection(QStringLiteral("Save Pass"), QStringLiteral("Discard"), parent),
      _engine(engine),
      _passes(passes),
      _choice(new QWidget(this)),
      _playTake(new TextButton(QStringLiteral("this take"), "playTake", _choice)),
      _playBefore(new TextButton({}, "playBefore", _choice)),
      _comparingObserver(engine.isComparing.addNotifier([this] { showChoice(); })) {
    connect(this, &NameSection::saved, this, [this](const QString& name) { _engine.finishRecording(name, _passes); });
    connect(this, &NameSection::dropped, this, [this, &history] {
        if (const auto take = _engine.waitingTake.value()) history.push(new TakeDiscard(_engine, _passes, *take));
    });

    auto* lanes = new SymbolButton(SymbolButton::Face::flat, QStringLiteral("lanes"), {}, drawing, this);
    lanes->setObjectName(QStringLiteral("takeLanes"));
    lanes->setAccessibleName(QStringLiteral("Show Lanes"));
    lanes->setToolTip(QStringLiteral("Show Lanes"));
    connect(lanes, &QAbstractButton::clicked, this, [this] {
        if (const auto& take = _engine.waitingTake.value()) Q_EMIT lanesWanted(*take);
    });
    addToHeading(lanes);

    auto* line = new QHBoxLayout(_choice);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0);
    auto* label = new QLabel(QStringLiteral("Play:"), _choice);
    label->setMinimumWidth(
        label->fontMetrics().horizontalAdvance(field().accessibleName())); // its buttons are as large as the field
    line->addWidget(label);
    line->addSpacing(8);
    for (TextButton* button : {_playTake, _playBefore}) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
        line->addWidget(button, button == _playBefore);
        connect(button, &QAbstractButton::clicked, this, [this, button] { _engine.compare(button == _playBefore); });
    }
    _playTake->setToolTip(QStringLiteral("READ, UPDATE and NULL act on the take"));
    _playBefore->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    addLine(_choice);
}

void TakeCard::refresh() {
    const std::optional<AutomationPass>& take = _engine.waitingTake.value();
    const std::optional<QUuid> waiting = take ? std::optional(take->id) : std::nullopt;
    if (take) setDetail(QStringLiteral("%1 events").arg(take->events.size()));
    if (std::exchange(_shown, waiting) != waiting && take) {
        propose(take->name);
        field().waitForTyping();
    }
    showChoice();
}

/// Shows the previous pass under its current name.
void TakeCard::showChoice() {
    const std::optional<AutomationPass>& before = _engine.selectedPass.value();
    _choice->setVisible(before.has_value());
    if (!before) return;
    const QString name = _passes.find(before->id).value_or(*before).name;
    const bool isComparing = _engine.isComparing.value();
    _playTake->setChecked(!isComparing);
    _playBefore->setChecked(isComparing);
    _playBefore->setAccessibleName(name);
    _playBefore->setToolTip(QStringLiteral("READ, UPDATE and NULL act on “%1”, to compare").arg(name));
    const QString shown =
        _playBefore->fontMetrics().elidedText(name, Qt::ElideRight, _playBefore->width() - 2 * choicePadding);
    _playBefore->setText(literally(shown));
}

void TakeCard::resizeEvent(QResizeEvent* event) {
    NameSection::resizeEvent(event);
    showChoice();
}

} // namespace tessik
