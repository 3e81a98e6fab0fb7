#pragma once

#include <QUndoCommand>
#include <QUuid>

#include <functional>

namespace tessik {

/// An undo step built from two functions: one that does it, called the first time too, and one that undoes it.
class UndoStep final : public QUndoCommand {
public:
    UndoStep(const QString& what, std::function<void()> redo, std::function<void()> undo)
        : QUndoCommand(what), _redo(std::move(redo)), _undo(std::move(undo)) {}

    void redo() override { _redo(); }
    void undo() override { _undo(); }

    /// Renames a record of a store.
    template <typename Store>
    static UndoStep* renaming(Store& store, const QUuid& id, const QString& before, const QString& after) {
        return new UndoStep(
            QStringLiteral("renaming %1").arg(before), [&store, id, after] { store.rename(id, after); },
            [&store, id, before] { store.rename(id, before); });
    }

private:
    const std::function<void()> _redo;
    const std::function<void()> _undo;
};

} // namespace tessik
