#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Views/Controls/SymbolButton.h"
#include "TessikAutomation/Views/Window/HeaderPart.h"

class QBoxLayout;
class QLabel;

namespace tessik {

class KeyboardArrowHandler;
class ModeKey;

/// The automation in the header: a key for each mode and for NULL, the engine's status, a warning while channels are
/// unknown, and room for buttons that open lists.
class AutomationPanelView final : public HeaderPart {
    Q_OBJECT

public:
    AutomationPanelView(PassEngine& engine, ConsoleModel& consoleModel, MTCClock& mtcClock, DrawingContext& drawing,
                        QWidget* parent = nullptr);

    /// W, U, R and N press the mode keys.
    void bindKeys(KeyboardArrowHandler& keys);
    /// A key left of the buttons.
    PanelButton& addKey(const QString& legend, const QString& symbol);
    /// A button at the right end, below any others.
    SymbolButton& addButton(const QString& symbol, const QString& text);

    int neededWidth(HeaderFit fit) const override;
    void setFit(HeaderFit fit) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Status {
        QString title;
        QString detail;
        QString help;
        QColor Tints::*color;
    };
    Status status() const;
    int statusWidth(HeaderFit fit) const;
    int warningWidth() const;
    void refit();
    void showKeys();
    void showStatus();
    void countUnsynced();
    void showWarning();

    PassEngine& _engine;
    ConsoleModel& _consoleModel;
    MTCClock& _mtcClock;
    DrawingContext& _drawing;
    ModeKey* _write;
    ModeKey* _update;
    ModeKey* _read;
    ModeKey* _null;
    std::vector<PanelButton*> _addedKeys;
    std::vector<SymbolButton*> _addedButtons;
    HeaderFit _fit = HeaderFit::legends;
    int _fitWidth = 0; ///< the width needed when last fitted
    QBoxLayout* _modeKeys;
    QBoxLayout* _lines; ///< the status and the warning
    QWidget* _status;
    QLabel* _title;
    QLabel* _detail;
    QWidget* _warning;
    QLabel* _warningSymbol;
    QLabel* _warningText;
    QBoxLayout* _buttons;
    int _unsynced = -1;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
