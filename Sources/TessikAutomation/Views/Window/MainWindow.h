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

    /// Panels of the header, which the window takes over.
    void setTransportPanel(HeaderPart* panel);
    void setAutomationPanel(HeaderPart* panel);
    /// The session's name in the header, what was last recalled, if anything, and whether everything is saved.
    void setSessionTitle(const QString& title, const QString& recalled, const QString& state);
    /// Beside the name of what was recalled, to deselect it.
    PanelButton& deselectKey();
    /// Where problems are listed.
    SymbolButton& problemsKey();

    /// Arrow keys page the inputs; the transport's owner assigns Space and Return.
    KeyboardArrowHandler keys;

    /// Puts the window where it was when last closed; false if that is not known.
    bool restorePlace();
    /// Remembers the place for the next start. Closing the window does it too.
    void savePlace();

    void openSettings();
    /// Opens the settings, for a menu.
    QAction* settingsAction() const { return _settingsAction; }
    /// The settings while open.
    SettingsView* settingsView() const { return _settings; }
    /// The sizes of the desk, for a menu.
    const QList<QAction*>& zoomActions() const { return _zoomActions; }
    /// Folds the master section away and back, for a menu.
    QAction* foldAction() const { return _foldAction; }
    DeskView& desk() const { return *_desk; }
    /// What the user can undo: manual controls, labels, master section.
    QUndoStack& history() { return _history; }
    /// What panels in the header draw with.
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
