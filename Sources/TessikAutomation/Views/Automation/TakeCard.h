#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Views/Controls/NameSection.h"
#include "TessikAutomation/Views/Controls/SymbolButton.h"

class QUndoStack;

namespace tessik {

/// The card of a waiting take: a name to keep it under, a way to discard it, which `history` can undo, and the choice
/// of what plays in the meantime, the take or the previous pass.
class TakeCard final : public NameSection {
    Q_OBJECT

public:
    TakeCard(PassEngine& engine, PassStore& passes, QUndoStack& history, DrawingContext& drawing, QWidget* parent);

    /// Shows the take that waits now; a name being typed for it stays.
    void refresh();

Q_SIGNALS:
    void lanesWanted(const tessik::AutomationPass& take);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showChoice();

    PassEngine& _engine;
    PassStore& _passes;
    std::optional<QUuid> _shown;
    QWidget* _choice;
    TextButton* _playTake;
    TextButton* _playBefore;
    QPropertyNotifier _comparingObserver;
};

} // namespace tessik
