#pragma once

#include <QString>

#include <optional>

namespace tessik {

/// What the session's flows ask and tell the user. Each call returns once the user has answered.
class SessionDialogs {
public:
    virtual ~SessionDialogs() = default;

    /// The path of one file to open, of any type; none if the user cancels.
    virtual std::optional<QString> chooseSessionToOpen(const QString& message) = 0;
    /// The path to save to; `proposed` is the current path, or just a file name. None if the user cancels.
    virtual std::optional<QString> chooseWhereToSave(const QString& proposed) = 0;
    /// Has only the button "OK".
    virtual void alert(const QString& title, const QString& text) = 0;
    /// The same about a file, with a button that shows its folder.
    virtual void alertOfFile(const QString& title, const QString& text, const QString& path) = 0;
    /// Whether to overwrite a file anyway.
    virtual bool confirmOverwrite(const QString& title, const QString& text) = 0;

    enum class Unsaved { save, discard, cancel };
    virtual Unsaved askUnsaved(const QString& title, const QString& text) = 0;

    struct TakeAnswer {
        Unsaved choice;
        QString name; ///< to save it under; never empty
    };
    /// What becomes of a take that waits for its name.
    virtual TakeAnswer askTake(const QString& title, const QString& text, const QString& proposedName) = 0;

    enum class Recovery {
        recover,
        discard,
        later ///< leaves it for the next startup
    };
    virtual Recovery askRecovery(const QString& title, const QString& text) = 0;
};

} // namespace tessik
