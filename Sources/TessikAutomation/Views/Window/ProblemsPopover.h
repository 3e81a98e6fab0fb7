#pragma once

#include "TessikAutomation/Session/Problems.h"
#include "TessikAutomation/Views/Controls/Popover.h"

class QScrollArea;

namespace tessik {

/// What is wrong now, each with what to do about it. Its button is there only while there are problems.
class ProblemsPopover final : public Popover {
    Q_OBJECT

public:
    ProblemsPopover(const Observable<std::vector<Problem>>& problems, SymbolButton& button, DrawingContext& drawing,
                    QWidget* over);

    /// What the program can do about a problem; unset offers are not made.
    std::function<void()> onSettingsWanted;
    std::function<void()> onRigWanted;

protected:
    void refresh() override;

private:
    QWidget* card(const Problem& problem);
    const std::function<void()>* answer(Problem::Offer offer) const;

    const Observable<std::vector<Problem>>& _problems;
    std::vector<Problem> _shown;
    QScrollArea* _scroll; ///< a low window may not have room for all of them
    QWidget* _cards;
    QPropertyNotifier _observer;
};

} // namespace tessik
