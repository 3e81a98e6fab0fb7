#pragma once

#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Views/Controls/SymbolButton.h"

class QLabel;
class QVBoxLayout;

namespace tessik {

class ModeKey;

/// The automation in the header: a key for each mode and for NULL, what the engine does, a warning while channels are
/// unknown, and room for buttons that open lists.
class AutomationPanelView final : public QWidget {
    Q_OBJECT

public:
    AutomationPanelView(PassEngine& engine, ConsoleModel& consoleModel, MTCClock& mtcClock, DrawingContext& drawing,
                        QWidget* parent = nullptr);

    /// A key left of the buttons.
    PanelButton& addKey(const QString& legend, const QString& symbol);
    /// A button at the right end, below those that are there.
    SymbolButton& addButton(const QString& symbol, const QString& text);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Status {
        QString title;
        QString detail;
        QString help;
        QColor Tints::*color;
    };
    Status status() const;
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
    QLabel* _title;
    QLabel* _detail;
    QWidget* _warning;
    QLabel* _warningSymbol;
    QLabel* _warningText;
    QVBoxLayout* _buttons;
    int _keysWidth = 0; ///< of those added
    int _unsynced = -1;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
