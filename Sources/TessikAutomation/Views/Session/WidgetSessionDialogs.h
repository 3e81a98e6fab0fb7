#pragma once

#include "TessikAutomation/Session/SessionDialogs.h"

class QMessageBox;
class QWidget;

namespace tessik {

/// The session's questions and messages as dialogs over a window.
class WidgetSessionDialogs final : public SessionDialogs {
public:
    /// The window that they belong to; it must outlive this.
    explicit WidgetSessionDialogs(QWidget& window) : _window(window) {}

    std::optional<QString> chooseSessionToOpen(const QString& message) override;
    std::optional<QString> chooseWhereToSave(const QString& proposed) override;
    void alert(const QString& title, const QString& text) override;
    void alertOfFile(const QString& title, const QString& text, const QString& path) override;
    bool confirmOverwrite(const QString& title, const QString& text) override;
    Unsaved askUnsaved(const QString& title, const QString& text) override;
    TakeAnswer askTake(const QString& title, const QString& text, const QString& proposedName) override;
    Recovery askRecovery(const QString& title, const QString& text) override;

    struct FileType {
        QString filter; ///< "Sessions (*.tessik)"
        QString suffix; ///< "tessik"
    };
    /// Paths of other files; none if the user cancels.
    std::optional<QString> chooseToOpen(const QString& title, const FileType& type);
    std::optional<QString> chooseToSave(const QString& title, const FileType& type, const QString& proposed);

private:
    QWidget& _window;
};

} // namespace tessik
