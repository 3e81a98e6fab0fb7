#pragma once

#include "TessikAutomation/Views/Controls/SymbolButton.h"
#include "TessikAutomation/Views/Window/HeaderPart.h"

class QBoxLayout;

namespace tessik {

class TextLine;

/// What is worked on: the session's title, the name of what was recalled with the session's state beside it or, where
/// that is too narrow, below it, and the button that lists problems. Title and name are elided, nothing else.
class HeaderTitle final : public HeaderPart {
    Q_OBJECT

public:
    explicit HeaderTitle(DrawingContext& drawing, QWidget* parent = nullptr);

    /// `recalled` may be empty.
    void setTexts(const QString& title, const QString& recalled, const QString& state);
    /// Behind the name of what was recalled, to let go of it; whoever knows whether that can be done shows it.
    PanelButton& deselectKey() { return *_deselect; }
    /// Whoever lists the problems shows it.
    SymbolButton& problemsKey() { return *_problems; }

    int neededWidth(HeaderFit fit) const override;
    void setFit(HeaderFit) override {}

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrangeState();

    QString _stateText;
    TextLine* _title;
    TextLine* _recalled;
    PanelButton* _deselect;
    TextLine* _state;
    QBoxLayout* _lines; ///< what was recalled, and the state
    SymbolButton* _problems;
};

} // namespace tessik
