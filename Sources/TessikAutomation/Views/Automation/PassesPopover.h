#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Views/Controls/Popover.h"
#include "TessikAutomation/Views/Controls/RecordList.h"

class QUndoStack;

namespace tessik {

class TakeCard;

/// The session's passes. Choosing one, even the selected one, selects it for playback and puts its starting state on
/// screen. Opens by itself when a take has ended and waits for its name.
class PassesPopover final : public Popover {
    Q_OBJECT

public:
    /// `history` can undo deletions.
    PassesPopover(PassEngine& engine, PassStore& passes, QUndoStack& history, SymbolButton& button,
                  DrawingContext& drawing, QWidget* over);

    // ---- what the list leaves to its owner
    std::function<void(const AutomationPass&)> onChosen; ///< even if already selected
    std::function<void(const AutomationPass&)> onShowLanes;
    std::function<void(const AutomationPass&)> onExport;
    std::function<void()> onImport;

protected:
    void refresh() override;
    void takeKeyboard() override;

private:
    void prepareRow(RecordRow& row);
    void showRow(RecordRow& row, const AutomationPass& pass);
    void showTake();

    PassEngine& _engine;
    PassStore& _passes;
    QUndoStack& _history;
    TakeCard* _take;
    RecordList* _list;
    std::optional<QUuid> _waiting;
    bool _openedItself = false;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
