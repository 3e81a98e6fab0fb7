#pragma once

#include "TessikAutomation/ManualSettings/MasterSectionStore.h"
#include "TessikAutomation/Views/Controls/ControlTable.h"

namespace tessik {

struct MasterSubject {
    MasterSectionStore* store;
    QUndoStack* history;
};

/// The master section with the four effects returns. It has no MIDI: it is only a record.
const ControlTable<MasterSubject>& masterPanelTable();
/// What is above the strips while the master section is folded away: its metal, with the maker's plate.
const PanelKind& foldedMasterKind();
/// The minimum height at which it is complete, in panel units. Extra height goes between its rows.
inline constexpr int masterPanelMinHeight = 288;

} // namespace tessik
