#pragma once

#include "TessikAutomation/ManualSettings/MasterSectionSettings.h"
#include "TessikKit/Models/Published.h"

#include <functional>

namespace tessik {

/// The session's master section. Main thread only.
class MasterSectionStore {
public:
    /// The current record; to edit it, write back a changed copy.
    Published<MasterSectionSettings, MasterSectionStore> settings;

    /// Writes the record and calls `onChange`; an equal one does nothing. Ignores a record with a NaN or an infinity.
    void setSettings(const MasterSectionSettings& changed);
    /// The same without `onChange`, for opening a session.
    void load(const MasterSectionSettings& loaded) { settings = loaded; }

    std::function<void()> onChange;
};

} // namespace tessik
