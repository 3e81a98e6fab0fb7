#pragma once

#include "TessikAutomation/ManualSettings/MasterSectionSettings.h"

#include <QProperty>

#include <functional>

namespace tessik {

/// The session's master section. Main thread only.
class MasterSectionStore {
public:
    /// The current record; edited by writing back a changed copy.
    const MasterSectionSettings& settings() const { return _settings.value(); }
    /// For watching; the setter is the way to write.
    QBindable<MasterSectionSettings> bindableSettings() const { return QBindable<MasterSectionSettings>(&_settings); }

    /// Writes the record and calls `onChange`; an equal one does nothing. A record with a value that is no number is
    /// ignored.
    void setSettings(const MasterSectionSettings& settings);
    /// The same without `onChange`: when a session is opened.
    void load(const MasterSectionSettings& settings) { _settings = settings; }

    std::function<void()> onChange;

private:
    QProperty<MasterSectionSettings> _settings;
};

} // namespace tessik
