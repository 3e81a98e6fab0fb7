#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Desk/DeskView.h"
#include "TessikAutomation/Views/Settings/SettingsView.h"
#include "TessikAutomation/Views/Theme/SystemColorScheme.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QMainWindow>
#include <QPointer>

namespace tessik {

class HeaderView;
class SymbolButton;

/// The one window: header and desk.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(const AppObjects& objects, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Panels of the header; the window owns them from here on.
    void setTransportPanel(QWidget* panel);
    void setAutomationPanel(QWidget* panel);
    /// The session's name in the header and one line on its state.
    void setSessionTitle(const QString& title, const QString& detail);
    /// Where problems are listed.
    SymbolButton& problemsKey();

    /// Arrow keys page the inputs; Space and Return are set by whoever owns the transport.
    KeyboardArrowHandler keys;

    void openSettings();
    /// The sheet while it is open.
    SettingsView* settingsView() const { return _settings; }
    /// The sizes of the desk, for a menu.
    const QList<QAction*>& zoomActions() const { return _zoomActions; }
    DeskView& desk() const { return *_desk; }
    /// What the user can take back: manual controls, labels, master section.
    QUndoStack& history() { return _history; }
    /// What a panel in the header draws with.
    DrawingContext& drawing() { return _drawing; }

private:
    void applyTheme();
    void addZoomAction(const QString& text, const QList<QKeySequence>& shortcuts, std::function<void()> action);

    AppObjects _objects;
    SystemColorScheme _system;
    DrawingContext _drawing;
    QUndoStack _history;
    HeaderView* _header;
    DeskView* _desk;
    QPointer<SettingsView> _settings;
    QList<QAction*> _zoomActions;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
