#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"

namespace tessik {

/// The session's passes, newest first, at most one for each id. Main thread only.
class PassStore {
public:
    QProperty<QList<AutomationPass>> passes;
    /// Called after each `save`, `rename` and `remove`, never on `load`.
    std::function<void()> onChange;

    /// Adds the pass, or replaces the one with the same id.
    void save(const AutomationPass& pass);
    /// The place in the list stays.
    void rename(const QUuid& id, const QString& name);
    /// A pass that the engine has selected stays selected there.
    void remove(const QUuid& id);
    /// Replaces all passes.
    void load(QList<AutomationPass> loaded);
};

} // namespace tessik
