#pragma once

#include "TessikAutomation/ManualSettings/ZeroConsole.h"

#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QUndoStack>

namespace tessik {

/// The tiers of Zero Console, each with its confirmation. What was zeroed cannot be undone, nor what was done before.
class ZeroConsoleMenu final : public QMenu {
    Q_OBJECT

public:
    ZeroConsoleMenu(const ZeroConsole& zeroConsole, QUndoStack& history, QWidget* parent);

    void ask(ResetTier tier);
    /// The confirmation while it shows.
    QMessageBox* confirmation() const { return _confirmation; }

private:
    ZeroConsole _zeroConsole;
    QUndoStack& _history;
    QPointer<QMessageBox> _confirmation;
};

} // namespace tessik
