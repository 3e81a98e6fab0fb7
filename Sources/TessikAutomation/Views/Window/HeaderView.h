#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Controls/SymbolButton.h"

class QHBoxLayout;

namespace tessik {

class ActivityLamp;

/// The strip along the top of the window: transport panel, automation buttons, session title, settings, and lamps that
/// light while MIDI from and to the desk passes.
class HeaderView final : public QWidget {
    Q_OBJECT

public:
    HeaderView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent = nullptr);

    /// Places a panel at the left end.
    void setTransportPanel(QWidget* panel);
    /// Places a panel right of the transport.
    void setAutomationPanel(QWidget* panel);
    /// What is worked on, and one line on its state.
    void setTitle(const QString& title, const QString& detail);
    /// The button below the title, for problems; whoever lists them shows it.
    SymbolButton& problemsKey() { return *_problems; }

Q_SIGNALS:
    void settingsRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place(QWidget*& slot, QWidget* panel, int index);
    void addLamps(const AppObjects& objects);
    int titleRight() const;
    int titleLeft() const;
    void placeProblemsKey();

    DrawingContext& _drawing;
    QHBoxLayout* _layout;
    QWidget* _transport = nullptr;
    QWidget* _automation = nullptr;
    PanelButton* _settings;
    SymbolButton* _problems;
    QHBoxLayout* _lamps;
    QString _title;
    QString _detail;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
