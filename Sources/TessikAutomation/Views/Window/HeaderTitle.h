#pragma once

#include "TessikAutomation/Views/Controls/SymbolButton.h"
#include "TessikAutomation/Views/Window/HeaderPart.h"

class QBoxLayout;

namespace tessik {

class TextLine;

/// What is being worked on: the session's title, the name of what was recalled with the session's state beside it or,
/// if that is too narrow, below it, and the button that lists problems. Only title and name are elided.
class HeaderTitle final : public HeaderPart {
    Q_OBJECT

public:
    explicit HeaderTitle(DrawingContext& drawing, QWidget* parent = nullptr);

    /// `recalled` may be empty.
    void setTexts(const QString& title, const QString& recalled, const QString& state);
    /// Beside the name of what was recalled, to deselect it; shown by whoever knows whether that is possible.
    PanelButton& deselectKey() { return *_deselect; }
    /// Shown by whoever lists the problems.
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
