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

Q_SIGNALS:
    void chosen(const tessik::AutomationPass& pass); ///< even if already selected
    // ---- what the list leaves to others
    void lanesWanted(const tessik::AutomationPass& pass);
    void exportWanted(const tessik::AutomationPass& pass);
    void importWanted();

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
