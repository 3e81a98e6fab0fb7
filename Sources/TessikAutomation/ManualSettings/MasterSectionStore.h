#pragma once

#include "TessikAutomation/ManualSettings/MasterSectionSettings.h"

#include <QProperty>

#include <functional>

namespace tessik {

/// The session's master section. Main thread only.
class MasterSectionStore {
public:
    /// The current record; to edit it, write back a changed copy.
    const MasterSectionSettings& settings() const { return _settings.value(); }
    /// For observing; write through the setter.
    QBindable<MasterSectionSettings> bindableSettings() const { return QBindable<MasterSectionSettings>(&_settings); }

    /// Writes the record and calls `onChange`; an equal one does nothing. Ignores a record with a NaN or an infinity.
    void setSettings(const MasterSectionSettings& settings);
    /// The same without `onChange`, for opening a session.
    void load(const MasterSectionSettings& settings) { _settings = settings; }

    std::function<void()> onChange;

private:
    QProperty<MasterSectionSettings> _settings;
};

} // namespace tessik
