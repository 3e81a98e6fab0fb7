#pragma once

#include "TessikAutomation/Automation/AutomationPass.h"
#include "TessikKit/Models/Published.h"

namespace tessik {

/// The session's passes, newest first, at most one per id. Main thread only.
class PassStore {
public:
    Published<QList<AutomationPass>, PassStore> passes;
    /// Called after each `save`, `rename` and `remove`, never on `load`.
    std::function<void()> onChange;

    std::optional<AutomationPass> find(const QUuid& id) const;
    /// Adds the pass, or replaces the one with the same id.
    void save(const AutomationPass& pass);
    /// Keeps its place in the list.
    void rename(const QUuid& id, const QString& name);
    /// A pass that the engine has selected stays selected in the engine.
    void remove(const QUuid& id);
    /// Replaces all passes.
    void load(QList<AutomationPass> loaded);
};

} // namespace tessik
