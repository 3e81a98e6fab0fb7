#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Views/Controls/Popover.h"

class QUndoStack;

namespace tessik {

class NameSection;

/// The session's passes. A click selects one for playback, which puts its starting state on screen, or lets go of it.
/// Opens by itself when a take has ended and waits for its name.
class PassesPopover final : public Popover {
    Q_OBJECT

public:
    /// What is deleted can be taken back from `history`.
    PassesPopover(PassEngine& engine, PassStore& passes, QUndoStack& history, SymbolButton& button,
                  DrawingContext& drawing, QWidget* over);

    // ---- what the list leaves to its owner
    std::function<void(const AutomationPass&)> onShowLanes;
    std::function<void(const AutomationPass&)> onExport;
    std::function<void()> onImport;

protected:
    void prepareRow(RecordRow& row) override;
    void refresh() override;

private:
    bool isSelected(const QUuid& id) const;
    void choose(const QUuid& id);
    void showTake();

    PassEngine& _engine;
    PassStore& _passes;
    QUndoStack& _history;
    NameSection* _take;
    std::optional<QUuid> _waiting;
    bool _openedItself = false;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
