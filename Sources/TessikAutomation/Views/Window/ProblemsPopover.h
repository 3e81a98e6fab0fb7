#pragma once

#include "TessikAutomation/Session/Problems.h"
#include "TessikAutomation/Views/Controls/Popover.h"

class QScrollArea;

namespace tessik {

/// What is wrong now, each with what to do about it. Its button is there only while something is.
class ProblemsPopover final : public Popover {
    Q_OBJECT

public:
    ProblemsPopover(QProperty<std::vector<Problem>>& problems, SymbolButton& button, DrawingContext& drawing,
                    QWidget* over);

    /// What the program can do about a problem; an offer that is not set is not made.
    std::function<void()> onSettingsWanted;
    std::function<void()> onRigWanted;

protected:
    void refresh() override;

private:
    QWidget* card(const Problem& problem);
    const std::function<void()>* answer(Problem::Offer offer) const;

    QProperty<std::vector<Problem>>& _problems;
    std::vector<Problem> _shown;
    QScrollArea* _scroll; ///< more than a low window has room for
    QWidget* _cards;
    QPropertyNotifier _observer;
};

} // namespace tessik
