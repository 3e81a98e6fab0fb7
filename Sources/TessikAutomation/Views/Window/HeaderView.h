#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"
#include "TessikAutomation/Views/Window/HeaderPart.h"

#include <QWidget>

namespace tessik {

class HeaderTitle;
class PanelButton;
class SymbolButton;

/// The strip along the top of the window: transport panel, automation buttons, session title, settings, and lamps that
/// light while MIDI from and to the desk passes.
///
/// Its parts stand side by side, each as wide as it needs to be; nothing is ever overlapped or cut off. If a window is
/// too narrow for that, they give way in this order:
///   1. the session's title and what was recalled are elided, down to 96 pixels;
///   2. keys with a symbol lose their legend and become 32 pixels wide;
///   3. the automation moves to a second row below, and the legends are back.
/// What never gives way: the modes, their status and warning, the saved state, the problems.
class HeaderView final : public QWidget {
    Q_OBJECT

public:
    HeaderView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent = nullptr);

    /// Places a panel at the left end.
    void setTransportPanel(HeaderPart* panel);
    /// Places a panel to the right of the transport.
    void setAutomationPanel(HeaderPart* panel);
    /// See HeaderTitle.
    void setTitle(const QString& title, const QString& recalled, const QString& state);
    /// See HeaderTitle.
    PanelButton& deselectKey();
    /// The button below the title, for problems; shown by whoever lists them.
    SymbolButton& problemsKey();

    /// The header's layout in a window of that width.
    HeaderFit fitFor(int width) const;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return {width(), heightForWidth(width())}; }

Q_SIGNALS:
    void settingsRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    void place(HeaderPart*& slot, HeaderPart* panel);
    void layOut();

    DrawingContext& _drawing;
    HeaderPart* _transport = nullptr;
    HeaderPart* _automation = nullptr;
    HeaderTitle* _title;
    HeaderPart* _tools;
    HeaderFit _fit = HeaderFit::legends;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
