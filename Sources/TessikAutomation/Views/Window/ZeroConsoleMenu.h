#pragma once

#include "TessikAutomation/ManualSettings/ZeroConsole.h"

#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QUndoStack>

namespace tessik {

/// The tiers of Zero Console, each with its confirmation. Neither a Zero nor anything done before it can be undone.
class ZeroConsoleMenu final : public QMenu {
    Q_OBJECT

public:
    ZeroConsoleMenu(const ZeroConsole& zeroConsole, QUndoStack& history, QWidget* parent);

    void ask(ResetTier tier);
    /// The confirmation while shown.
    QMessageBox* confirmation() const { return _confirmation; }

private:
    ZeroConsole _zeroConsole;
    QUndoStack& _history;
    QPointer<QMessageBox> _confirmation;
};

} // namespace tessik
