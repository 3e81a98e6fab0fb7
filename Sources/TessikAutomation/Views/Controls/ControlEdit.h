#pragma once

#include <QUndoCommand>

#include <functional>

namespace tessik {

/// An undoable change of one control. The changes of one gesture are merged.
class ControlEdit final : public QUndoCommand {
public:
    /// Two changes with the same `gesture` and `control` are merged.
    ControlEdit(const QString& what, std::function<void(double)> write, double before, double after,
                const void* control, std::uint64_t gesture)
        : QUndoCommand(what),
          _write(std::move(write)),
          _before(before),
          _after(after),
          _control(control),
          _gesture(gesture) {}

    void undo() override { _write(_before); }
    void redo() override { _write(_after); }
    int id() const override { return 1; }
    bool mergeWith(const QUndoCommand* other) override {
        const auto* next = dynamic_cast<const ControlEdit*>(other);
        if (!next || next->_control != _control || next->_gesture != _gesture) return false;
        _after = next->_after;
        setObsolete(_after == _before);
        return true;
    }

private:
    std::function<void(double)> _write;
    double _before;
    double _after;
    const void* _control;
    std::uint64_t _gesture;
};

} // namespace tessik
