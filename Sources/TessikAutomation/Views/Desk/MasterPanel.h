#pragma once

#include "TessikAutomation/ManualSettings/MasterSectionStore.h"
#include "TessikAutomation/Views/Controls/ControlTable.h"

namespace tessik {

struct MasterSubject {
    MasterSectionStore* store;
    QUndoStack* history;
};

/// The master section with the four effects returns. It has no MIDI: a record.
const ControlTable<MasterSubject>& masterPanelTable();
/// What stands above the strips while the master section is folded away: its metal, with the maker's plate.
const PanelKind& foldedMasterKind();
/// The least height in which it is complete, in units of the panel. What is beyond goes between its rows.
inline constexpr int masterPanelMinHeight = 288;

} // namespace tessik
