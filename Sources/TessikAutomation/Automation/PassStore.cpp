#include "TessikAutomation/Automation/PassStore.h"

#include "TessikAutomation/Persistence/StoreLists.h"

namespace tessik {

std::optional<AutomationPass> PassStore::find(const QUuid& id) const { return withID(passes.value(), id); }

void PassStore::save(const AutomationPass& pass) {
    QList<AutomationPass> all = withoutID(passes.value(), pass.id);
    all.append(pass);
    sortNewestFirst(all);
    passes = all;
    if (onChange) onChange();
}

void PassStore::rename(const QUuid& id, const QString& name) {
    passes = renamed(passes.value(), id, name);
    if (onChange) onChange();
}

void PassStore::remove(const QUuid& id) {
    passes = withoutID(passes.value(), id);
    if (onChange) onChange();
}

void PassStore::load(QList<AutomationPass> loaded) {
    sortNewestFirst(loaded);
    passes = std::move(loaded);
}

} // namespace tessik
