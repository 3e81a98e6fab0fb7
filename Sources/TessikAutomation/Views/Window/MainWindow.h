#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Desk/DeskView.h"
#include "TessikAutomation/Views/Settings/SettingsView.h"
#include "TessikAutomation/Views/Theme/SystemColorScheme.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QMainWindow>
#include <QPointer>

namespace tessik {

class HeaderPart;
class HeaderView;
class PanelButton;
class SymbolButton;

/// The one window: header and desk.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(const AppObjects& objects, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Panels of the header; the window owns them from here on.
    void setTransportPanel(HeaderPart* panel);
    void setAutomationPanel(HeaderPart* panel);
    /// The session's name in the header, what was recalled last, if anything, and whether all is saved.
    void setSessionTitle(const QString& title, const QString& recalled, const QString& state);
    /// Beside the name of what was recalled, to let go of it.
    PanelButton& deselectKey();
    /// Where problems are listed.
    SymbolButton& problemsKey();

    /// Arrow keys page the inputs; Space and Return are set by whoever owns the transport.
    KeyboardArrowHandler keys;

    /// Puts the window where it was when it was last closed; false where that is not known.
    bool restorePlace();

    void openSettings();
    /// Opens them, for a menu.
    QAction* settingsAction() const { return _settingsAction; }
    /// The sheet while it is open.
    SettingsView* settingsView() const { return _settings; }
    /// The sizes of the desk, for a menu.
    const QList<QAction*>& zoomActions() const { return _zoomActions; }
    /// Folds the master section away and back, for a menu.
    QAction* foldAction() const { return _foldAction; }
    DeskView& desk() const { return *_desk; }
    /// What the user can take back: manual controls, labels, master section.
    QUndoStack& history() { return _history; }
    /// What a panel in the header draws with.
    DrawingContext& drawing() { return _drawing; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void applyTheme();
    void addZoomAction(const QString& text, const QList<QKeySequence>& shortcuts, std::function<void()> action);

    AppObjects _objects;
    SystemColorScheme _system;
    DrawingContext _drawing;
    QUndoStack _history;
    HeaderView* _header;
    DeskView* _desk;
    QAction* _settingsAction;
    QPointer<SettingsView> _settings;
    QList<QAction*> _zoomActions;
    QAction* _foldAction;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
